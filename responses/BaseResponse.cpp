#include "brevint/BaseResponse.h"

#include "brevint/ErrorCodes.h"
#include "support/Text.h"
#include "support/Utf8.h"
#include "support/Xml.h"

#include <new>

namespace {

std::string_view UpToZero(const std::vector<char>& bytes) {
    const std::string_view text(bytes.data(), bytes.size());
    return text.substr(0, text.find('\0'));
}

} // namespace

CBaseResponse::CBaseResponse() : m_errorCode(ErrorCode::MessageNotRecognised) {}

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
    TakeReplyAsText();
    try {
        StoreReply(bytes, status);
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
    if (const auto exact = m_exactMessages.find(text); exact != m_exactMessages.end()) {
        m_errorCode = exact->second;
        return;
    }
    for (const auto& [prefix, code] : m_messagePrefixes) {
        if (text.starts_with(prefix)) {
            m_errorCode = code;
            return;
        }
    }
}

std::wstring
CBaseResponse::ConvertServerResponseToStringReponse(const std::vector<char>& bytes) const {
    return Utf8::ToWide(UpToZero(bytes));
}

void CBaseResponse::AddExactMessages(std::span<const ErrorRow> rows) {
    for (const ErrorRow& row : rows) {
        m_exactMessages.emplace(row.message, row.code);
    }
}

void CBaseResponse::AddMessagePrefixes(std::span<const ErrorRow> rows) {
    for (const ErrorRow& row : rows) {
        m_messagePrefixes.emplace(row.message, row.code);
    }
}

void CBaseResponse::SetErrorCode(double code) {
    m_errorCode = code;
}

void CBaseResponse::StoreReply(const std::vector<char>& bytes, unsigned long status) {
    m_statusCode = status;
    m_replyBytes.insert(m_replyBytes.end(), bytes.begin(), bytes.end());
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

std::string_view CBaseResponse::ReplyAsUtf8(std::string& repaired) const {
    const std::string_view text = ReplyText();
    if (Utf8::IsValid(text)) {
        return text;
    }
    repaired = Utf8::Repaired(text);
    return repaired;
}

bool CBaseResponse::BeginParse() {
    const bool isEmpty = IsReplyEmpty();
    m_errorCode = isEmpty ? ErrorCode::EmptyReply : ErrorCode::ReplyNotXml;
    return !isEmpty;
}

XmlDocPtr CBaseResponse::ParseReplyText() const {
    std::string repaired;
    return XmlDocPtr(ParseXML(ReplyAsUtf8(repaired)));
}

XmlDocPtr CBaseResponse::ParseReply() {
    return BeginParse() ? ParseReplyText() : nullptr;
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
