#pragma once

#include "brevint/IResponse.h"
#include "brevint/XmlDocPtr.h"

#include <map>
#include <span>
#include <string>
#include <vector>

struct _xmlNode;

/// Common part of every response: keeps the reply, parses it and turns the server's message into an
/// error code. Not safe for use by two threads at once.
class BREVINT_API CBaseResponse : public virtual IResponse {
public:
    CBaseResponse();
    CBaseResponse(const CBaseResponse&) = delete;
    CBaseResponse& operator=(const CBaseResponse&) = delete;
    ~CBaseResponse() override;

    bool GetSucceeded() const override;
    const std::vector<char>& GetServerResponse() const override;
    std::wstring GetServerResponseAsString() const override;
    void SetServerResponse(const std::vector<char>& bytes, unsigned long status) override;
    std::wstring GetServerErrorMessage() const override;
    double GetErrorCode() const override;
    unsigned long GetStatusCode() const override;
    /// Success unless the reply is empty, is not XML or holds a message of the server. The HTTP
    /// status plays no part.
    void ParseServerResponse() override;
    void ProcessErrorMessage(const wchar_t* message) override;

    /// Reply bytes as text: UTF-8, up to the first zero byte.
    std::wstring ConvertServerResponseToStringReponse(const std::vector<char>& bytes) const;

protected:
    /// Where a reply holds the server's message.
    static constexpr const char* kMessagePath = "/ResponseData/Message";

    /// A message of the server, in lower case, and the code it stands for.
    struct ErrorRow {
        const wchar_t* message;
        double code;
    };

    /// Adds messages that must match as a whole. A message already held keeps its code.
    void AddExactMessages(std::span<const ErrorRow> rows);
    /// Adds beginnings of messages. A beginning already held keeps its code.
    void AddMessagePrefixes(std::span<const ErrorRow> rows);

    void SetErrorCode(double code);
    /// Stores a reply without judging it: appends the bytes and sets the status.
    void StoreReply(const std::vector<char>& bytes, unsigned long status);
    /// Judges what StoreReply has stored as an empty reply: there is no memory for it.
    void DropReply();
    /// Makes the text that belongs to the bytes held.
    void ConvertReply();
    bool IsReplyEmpty() const;
    /// Parses the reply's text; null when it is not XML.
    XmlDocPtr ParseReplyText() const;
    /// The beginning of every parse: code 1102 and null for an empty reply, otherwise code 1104 and
    /// the document, null when the reply is not XML.
    XmlDocPtr ParseReply();
    /// Success, unless the document holds a message of the server.
    void JudgeByMessage(_xmlDoc* document);
    /// Takes a node's text (empty for null) as the server's message and sets its code.
    void TakeServerMessage(_xmlNode* node);

private:
    std::wstring m_serverErrorMessage;
    std::wstring m_replyText;
    double m_errorCode;
    unsigned long m_statusCode;
    std::vector<char> m_replyBytes;
    std::map<std::wstring, double> m_exactMessages;
    std::map<std::wstring, double> m_messagePrefixes;
};
