// SPDX-License-Identifier: MIT
// The clipboard of a Wayland desktop, for a program without windows.
#pragma once

#include "platform/clipboard/ClipboardForms.h"
#include "platform/clipboard/DataControlProtocol.h"
#include "platform/clipboard/DesktopClipboard.h"

#include <map>
#include <memory>

#include <QSocketNotifier>

struct wl_registry;
struct wl_seat;

namespace quoddle {

class DataControlClipboard : public DesktopClipboard {
public:
    /// Whether there is a Wayland desktop that gives the clipboard to programs without windows. May be called before there is an
    /// application object.
    static bool isOffered();
    /// Null when the desktop does not offer it.
    static std::unique_ptr<DataControlClipboard> connectToDesktop();
    ~DataControlClipboard() override;

    std::vector<AEDesc> contents(DescType wanted) override;
    bool setContents(const std::vector<AEDesc>& forms) override;
    bool isOwner() const override { return mSource; }

private:
    struct Callbacks;
    explicit DataControlClipboard(wl_display* display);
    bool bind();
    void listenToDesktop();
    void readEvents();
    QByteArray receive(const QString& type);
    void send(const QString& type, int descriptor);
    void dropSource();
    void dropOffersExcept(wl_proxy* offer);

    wl_display* const mDisplay;
    wl_registry* mRegistry = nullptr;
    wl_seat* mSeat = nullptr;
    const DataControlProtocol* mProtocol = nullptr;
    std::uint32_t mManagerName = 0;
    wl_proxy* mManager = nullptr;
    wl_proxy* mDevice = nullptr;
    wl_proxy* mSource = nullptr; // offers what this process has copied; null while others own the clipboard
    ClipboardData mData;
    std::map<wl_proxy*, QStringList> mOffers; // the desktop's offers, with the MIME types of each
    wl_proxy* mSelection = nullptr;           // the current offer; null when the clipboard is empty
    std::unique_ptr<QSocketNotifier> mReadable;
};

} // namespace quoddle
