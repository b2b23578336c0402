// SPDX-License-Identifier: MIT
// An open file of the system, closed when its owner goes.
#pragma once

#include <unistd.h>
#include <utility>

namespace quoddle {

class FileDescriptor {
public:
    /// Takes over an open descriptor; a negative number is none.
    explicit FileDescriptor(int number = -1) : mNumber(number) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept : mNumber(std::exchange(other.mNumber, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        reset(std::exchange(other.mNumber, -1));
        return *this;
    }

    int number() const { return mNumber; }
    bool isOpen() const { return mNumber >= 0; }
    void reset(int number = -1) {
        if (mNumber >= 0)
            ::close(mNumber);
        mNumber = number;
    }

private:
    int mNumber;
};

} // namespace quoddle
