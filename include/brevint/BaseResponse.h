#pragma once

#include "brevint/IResponse.h"
#include "brevint/XmlDocPtr.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct _xmlNode;

/// Common part of every response: keeps the reply, parses it and turns the server's message into an
/// error code. Not safe for use by two threads at once.
///
/// A class of an application's own may derive from it, or from a response of the library: it
/// overrides ParseServerResponse and adds messages of its own in its constructor.
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
        const wchar_t* message; ///< the whole message or its beginning
        double code;            ///< one of ErrorCode
    };

    /// Adds messages that are recognised as a whole. One that is known already keeps its code.
    void AddExactMessages(std::span<const ErrorRow> rows);
    /// Adds beginnings by which other messages are recognised, likewise. Where several fit, the one
    /// that sorts first counts.
    void AddMessagePrefixes(std::span<const ErrorRow> rows);

    /// Judges the reply.
    void SetErrorCode(double code);
    /// Stores a reply without judging it: appends the bytes and sets the status.
    void StoreReply(const std::vector<char>& bytes, unsigned long status);
    /// Judges what StoreReply has stored as an empty reply: there is no memory for it.
    void DropReply();
    /// Makes the bytes held count as the reply's text. They are converted when somebody asks.
    void TakeReplyAsText();
    /// True when the reply's text is empty.
    bool IsReplyEmpty() const;
    /// The beginning of every parse. False, with the code 1102, for an empty reply; otherwise the
    /// code is 1104, which stays when the reply turns out not to be XML.
    bool BeginParse();
    /// Parses the reply's text; null when it is not XML.
    XmlDocPtr ParseReplyText() const;
    /// BeginParse, and then what ParseReplyText returns; null for an empty reply.
    XmlDocPtr ParseReply();
    /// The reply's text in well-formed UTF-8. It lies in the reply, or in `repaired` when it came
    /// malformed.
    std::string_view ReplyAsUtf8(std::string& repaired) const;
    /// Success, unless the document holds a message of the server.
    void JudgeByMessage(_xmlDoc* document);
    /// Takes a node's text (empty for null) as the server's message and sets its code.
    void TakeServerMessage(_xmlNode* node);

private:
    /// The text as it came.
    std::string_view ReplyText() const;

    std::wstring m_serverErrorMessage;
    double m_errorCode;
    unsigned long m_statusCode{200};
    std::vector<char> m_replyBytes;
    bool m_replyIsText = false;
    std::map<std::wstring, double> m_exactMessages;
    std::map<std::wstring, double> m_messagePrefixes;
};
