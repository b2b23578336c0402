// SPDX-License-Identifier: MIT
// The clipboard of a Wayland desktop for a program without windows.
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
    /// Whether there is a Wayland desktop, and one that lets not only windows have the clipboard. May be asked before there is an
    /// application.
    static bool isOffered();
    /// Null where it is not offered.
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
    wl_proxy* mSource = nullptr; // of what we have copied, while that is the clipboard
    ClipboardData mData;
    std::map<wl_proxy*, QStringList> mOffers; // with the types of each
    wl_proxy* mSelection = nullptr;           // one of them, or null
    std::unique_ptr<QSocketNotifier> mReadable;
};

} // namespace quoddle
