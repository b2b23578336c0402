// SPDX-License-Identifier: MIT
#include "platform/additions/Clipboard.h"

#include <mutex>

namespace quoddle {

namespace {

class ProcessClipboard : public Clipboard {
public:
    std::vector<AEDesc> contents() override {
        std::lock_guard lock(mMutex);
        return mForms;
    }
    bool setContents(std::vector<AEDesc> forms) override {
        std::lock_guard lock(mMutex);
        mForms = std::move(forms);
        return true;
    }

private:
    std::mutex mMutex;
    std::vector<AEDesc> mForms;
};

std::mutex sMutex;
std::shared_ptr<Clipboard> sShared;

} // namespace

std::shared_ptr<Clipboard> Clipboard::shared() {
    std::lock_guard lock(sMutex);
    if (!sShared)
        sShared = std::make_shared<ProcessClipboard>();
    return sShared;
}

void Clipboard::setShared(std::shared_ptr<Clipboard> clipboard) {
    std::lock_guard lock(sMutex);
    sShared = std::move(clipboard);
}

} // namespace quoddle
