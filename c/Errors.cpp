#include "brevint/ErrorDescription.h"
#include "c/Common.h"

#include <new>

namespace {

/// An error with the texts that it points to.
struct OwnedError {
    brevint_error error = {};
    std::string text, serverMessage;
};

} // namespace

namespace c {

const char* Hint(double code) {
    const ErrorDescription* const description = DescribeError(code);
    return description ? description->hint : "";
}

std::int32_t Report(const calls::Failure& failure, brevint_error** error) {
    if (error) {
        *error = nullptr;
    }
    if (!failure || !error) {
        return failure ? 0 : 1;
    }
    try {
        auto owned = std::make_unique<OwnedError>();
        owned->text = failure.kind == calls::FailureKind::OutOfMemory
                          ? "There is no memory left, or no thread to spare."
                          : Utf8::ToNarrow(failure.text);
        owned->serverMessage = Utf8::ToNarrow(failure.serverMessage);
        owned->error = Blank<brevint_error>();
        owned->error.failure = static_cast<std::int32_t>(failure.kind);
        owned->error.code = static_cast<std::int32_t>(failure.code);
        owned->error.connection = static_cast<std::int32_t>(failure.connection);
        owned->error.http_status = static_cast<std::uint32_t>(failure.status);
        owned->error.text = owned->text.c_str();
        owned->error.hint = Hint(failure.code);
        owned->error.server_message = owned->serverMessage.c_str();
        owned->error.may_have_happened = failure.mayHaveHappened ? 1 : 0;
        *error = &owned.release()->error;
    } catch (const std::bad_alloc&) {
        *error = nullptr;
    }
    return 0;
}

char* MakeText(std::string_view text) {
    auto copy = std::make_unique_for_overwrite<char[]>(text.size() + 1);
    std::ranges::copy(text, copy.get());
    copy[text.size()] = '\0';
    return copy.release();
}

} // namespace c

void brevint_error_free(brevint_error* error) {
    // The error is the first member of what owns it.
    delete reinterpret_cast<OwnedError*>(error);
}

const char* brevint_code_meaning(int32_t code) {
    const ErrorDescription* const description = DescribeError(code);
    return description ? description->meaning : nullptr;
}

const char* brevint_code_name(int32_t code) {
    const ErrorDescription* const description = DescribeError(code);
    return description ? description->name : nullptr;
}

const char* brevint_code_hint(int32_t code) {
    return c::Hint(code);
}

void brevint_text_free(char* text) {
    delete[] text;
}
