#include "brevint/BaseResponse.h"

#include "brevint/ErrorCodes.h"
#include "support/Text.h"
#include "support/Utf8.h"
#include "support/Xml.h"

#include <cwchar>
#include <new>

namespace {

std::string_view UpToZero(const std::vector<char>& bytes) {
    const std::string_view text(bytes.data(), bytes.size());
    return text.substr(0, text.find('\0'));
}

} // namespace

CBaseResponse::CBaseResponse() : m_errorCode(ErrorCode::MessageNotRecognised), m_statusCode(200) {}

CBaseResponse::~CBaseResponse() = default;

bool CBaseResponse::GetSucceeded() const {
    return m_errorCode == ErrorCode::Success;
}

const std::vector<char>& CBaseResponse::GetServerResponse() const {
    return m_replyBytes;
}

std::wstring CBaseResponse::GetServerResponseAsString() const {
    return Utf8::ToWide(ReplyText());
}

void CBaseResponse::SetServerResponse(const std::vector<char>& bytes, unsigned long status) {
    StoreReply(bytes, status);
    TakeReplyAsText();
    try {
        ParseServerResponse();
    } catch (const std::bad_alloc&) {
        DropReply();
    }
}

std::wstring CBaseResponse::GetServerErrorMessage() const {
    return m_serverErrorMessage;
}

double CBaseResponse::GetErrorCode() const {
    return m_errorCode;
}

unsigned long CBaseResponse::GetStatusCode() const {
    return m_statusCode;
}

void CBaseResponse::ParseServerResponse() {
    if (const XmlDocPtr document = ParseReply()) {
        JudgeByMessage(document.get());
    }
}

void CBaseResponse::ProcessErrorMessage(const wchar_t* message) {
    m_errorCode = ErrorCode::MessageNotRecognised;
    const std::wstring text = BaseHlpr::ToLower(message);
    for (const ErrorRow& row : m_exactMessages) {
        if (text == row.message) {
            m_errorCode = row.code;
            return;
        }
    }
    std::size_t shortest = text.size() + 1;
    for (const ErrorRow& row : m_messagePrefixes) {
        const std::size_t length = std::wcslen(row.message);
        if (length < shortest && text.starts_with(row.message)) {
            shortest = length;
            m_errorCode = row.code;
        }
    }
}

std::wstring
CBaseResponse::ConvertServerResponseToStringReponse(const std::vector<char>& bytes) const {
    return Utf8::ToWide(UpToZero(bytes));
}

void CBaseResponse::UseExactMessages(std::span<const ErrorRow> rows) {
    m_exactMessages = rows;
}

void CBaseResponse::UseMessagePrefixes(std::span<const ErrorRow> rows) {
    m_messagePrefixes = rows;
}

void CBaseResponse::SetErrorCode(double code) {
    m_errorCode = code;
}

void CBaseResponse::StoreReply(const std::vector<char>& bytes, unsigned long status) {
    m_replyBytes.insert(m_replyBytes.end(), bytes.begin(), bytes.end());
    m_statusCode = status;
}

void CBaseResponse::DropReply() {
    std::vector<char>().swap(m_replyBytes);
    ParseServerResponse();
}

void CBaseResponse::TakeReplyAsText() {
    m_replyIsText = true;
}

bool CBaseResponse::IsReplyEmpty() const {
    return ReplyText().empty();
}

std::string_view CBaseResponse::ReplyText() const {
    return m_replyIsText ? UpToZero(m_replyBytes) : std::string_view();
}

XmlDocPtr CBaseResponse::ParseReplyText(const char* path, XmlElementSink* sink) const {
    std::string_view text = ReplyText();
    std::string repaired;
    if (!Utf8::IsValid(text)) {
        repaired = Utf8::Repaired(text);
        text = repaired;
    }
    return XmlDocPtr(sink ? ParseXML(text, path, *sink) : ParseXML(text));
}

XmlDocPtr CBaseResponse::ParseReply(const char* path, XmlElementSink* sink) {
    m_errorCode = ErrorCode::EmptyReply;
    if (IsReplyEmpty()) {
        return nullptr;
    }
    m_errorCode = ErrorCode::ReplyNotXml;
    return ParseReplyText(path, sink);
}

void CBaseResponse::JudgeByMessage(_xmlDoc* document) {
    if (_xmlNode* message = SimpleDoXPath(kMessagePath, document)) {
        TakeServerMessage(message);
    } else {
        m_errorCode = ErrorCode::Success;
    }
}

void CBaseResponse::TakeServerMessage(_xmlNode* node) {
    m_serverErrorMessage = GetWideNodeValue(node);
    ProcessErrorMessage(m_serverErrorMessage.c_str());
}
