#pragma once

#include "brevint/IResponse.h"
#include "support/Utf8.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::test {

/// A file name as the standard library wants it, whatever the process's locale.
inline std::filesystem::path FilePath(const std::wstring& name) {
    const std::string narrow = Utf8::ToNarrow(name);
    return std::u8string(narrow.begin(), narrow.end());
}

/// Writes a file and gives its name back.
inline std::wstring WriteFile(const std::wstring& name, std::string_view content) {
    std::ofstream(FilePath(name), std::ios::binary) << content;
    return name;
}

/// Content of a file; "(unreadable)" when it cannot be read.
inline std::string ReadFile(const std::wstring& name) {
    std::ifstream file(FilePath(name), std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(unreadable)";
}

/// A file with that ending; empty when the folder holds none.
inline std::filesystem::path FindFile(const std::filesystem::path& folder, const char* ending) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ending) {
            return entry.path();
        }
    }
    return {};
}

inline std::vector<char> Bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

/// That many times the text.
inline std::string Repeat(int count, const std::string& text) {
    std::string all;
    while (count-- > 0) {
        all += text;
    }
    return all;
}

/// That many times the text, each with its number and what follows it.
inline std::string Numbered(int count, const std::string& text, const std::string& after = {}) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all.append(text).append(std::to_string(i)).append(after);
    }
    return all;
}

/// The text with something else in the place of a part, wherever that stands.
inline std::string Replace(std::string text, std::string_view part, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size()) {
        text.replace(at, part.size(), by);
    }
    return text;
}

/// A reply of the service with that content.
inline std::string Document(const std::string& content) {
    return "<ResponseData>" + content + "</ResponseData>";
}

inline const std::string kBoundary = "---------------------8cdfaf76df000f9";

/// The body that brings the service a file.
inline std::string Multipart(const std::string& name, const std::string& content) {
    return "--" + kBoundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" +
           name + "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + content + "\r\n--" +
           kBoundary + "--\r\n";
}

/// Gives a response a reply as the transport does.
inline void Fill(IResponse& response, std::string_view body, unsigned long status = 200) {
    response.SetServerResponse(Bytes(body), status);
}

} // namespace brevint::test
