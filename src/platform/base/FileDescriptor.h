// SPDX-License-Identifier: MIT
// A file descriptor that is closed when its owner is destroyed.
#pragma once

#include <unistd.h>
#include <utility>

namespace quoddle {

class FileDescriptor {
public:
    /// Takes ownership of an open descriptor; a negative number stands for none.
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
