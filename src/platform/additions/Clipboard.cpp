// SPDX-License-Identifier: MIT
#include "platform/additions/Clipboard.h"

#include "platform/additions/ClipboardProcess.h"

#include <mutex>

namespace quoddle {

namespace {

std::mutex sMutex;
std::shared_ptr<Clipboard> sShared;

} // namespace

std::shared_ptr<Clipboard> Clipboard::shared() {
    std::lock_guard lock(sMutex);
    if (!sShared)
        sShared = std::make_shared<additions::ClipboardProcess>();
    return sShared;
}

void Clipboard::setShared(std::shared_ptr<Clipboard> clipboard) {
    std::lock_guard lock(sMutex);
    sShared.swap(clipboard);
}

} // namespace quoddle
