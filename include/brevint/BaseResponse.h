#pragma once

#include "brevint/IResponse.h"
#include "brevint/XmlDocPtr.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

class XmlElementSink;
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
        const wchar_t* message; ///< the whole message or its beginning
        double code;            ///< one of ErrorCode
    };

    /// The messages that are recognised as a whole. The rows are not copied: they live as long as
    /// the program.
    void UseExactMessages(std::span<const ErrorRow> rows);
    /// The beginnings by which other messages are recognised, likewise. Where several fit the
    /// shortest counts.
    void UseMessagePrefixes(std::span<const ErrorRow> rows);

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
    /// Parses the reply's text; null when it is not XML. Elements that `path`, as in "/Name/Name",
    /// selects go to the sink one by one and do not stay in the document: for replies with very
    /// many of a kind. They count only if a document is returned.
    XmlDocPtr ParseReplyText(const char* path = nullptr, XmlElementSink* sink = nullptr) const;
    /// The beginning of every parse: code 1102 and null for an empty reply, otherwise code 1104 and
    /// what ParseReplyText returns.
    XmlDocPtr ParseReply(const char* path = nullptr, XmlElementSink* sink = nullptr);
    /// Success, unless the document holds a message of the server.
    void JudgeByMessage(_xmlDoc* document);
    /// Takes a node's text (empty for null) as the server's message and sets its code.
    void TakeServerMessage(_xmlNode* node);

private:
    /// The text as it came in, in UTF-8 if it is well-formed.
    std::string_view ReplyText() const;

    std::wstring m_serverErrorMessage;
    double m_errorCode;
    unsigned long m_statusCode;
    std::vector<char> m_replyBytes;
    bool m_replyIsText = false;
    std::span<const ErrorRow> m_exactMessages;
    std::span<const ErrorRow> m_messagePrefixes;
};
