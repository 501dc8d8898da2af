#pragma once

#include <utility>

#include <unistd.h>

/// Owner of an open file.
class Descriptor {
public:
    Descriptor() = default;
    /// A negative number stands for one that could not be opened.
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }

    int Get() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

    /// Closes it and tells whether that went well: what was written can fail to arrive as late as
    /// here.
    bool Close() { return close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number = -1;
};
