// SPDX-License-Identifier: MIT
#include "platform/clipboard/DataControlClipboard.h"

#include "platform/clipboard/DataPipe.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>

#include <wayland-client-protocol.h>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

using Protocol = DataControlProtocol;

constexpr qsizetype kMostTypes = 256;
constexpr int kMostWriters = 64;
constexpr QLatin1StringView kPlainText = "text/plain"_L1;
constexpr QLatin1StringView kTextNames[] = {"text/plain;charset=utf-8"_L1, "UTF8_STRING"_L1, "TEXT"_L1, "STRING"_L1};

template<class... Arguments>
wl_proxy* request(wl_proxy* proxy, std::uint32_t opcode, const wl_interface* made, std::uint32_t flags, Arguments... arguments) {
    return wl_proxy_marshal_flags(proxy, opcode, made, Protocol::kVersion, flags, arguments...);
}

template<class Listener>
void listen(wl_proxy* proxy, const Listener& listener, void* self) {
    wl_proxy_add_listener(proxy, reinterpret_cast<void (**)()>(const_cast<Listener*>(&listener)), self);
}

} // namespace

struct DataControlClipboard::Callbacks {
    static DataControlClipboard& of(void* self) { return *static_cast<DataControlClipboard*>(self); }

    static void global(void* self, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
        auto& clipboard = of(self);
        if (const Protocol* protocol = Protocol::named(interface)) {
            if (clipboard.mProtocol && !protocol->isCurrent)
                return;
            clipboard.mProtocol = protocol;
            clipboard.mManagerName = name;
        } else if (std::strcmp(interface, wl_seat_interface.name) == 0 && !clipboard.mSeat) {
            clipboard.mSeat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        }
    }
    static void globalRemoved(void*, wl_registry*, std::uint32_t) {}

    static void dataOffer(void* self, wl_proxy*, wl_proxy* offer) {
        of(self).mOffers[offer];
        listen(offer, kOffer, self);
    }
    static void selection(void* self, wl_proxy*, wl_proxy* offer) { of(self).dropOffersExcept(of(self).mSelection = offer); }
    static void primarySelection(void* self, wl_proxy*, wl_proxy*) { of(self).dropOffersExcept(of(self).mSelection); }
    static void finished(void* self, wl_proxy*) {
        of(self).dropSource();
        Q_EMIT of(self).lost();
    }
    static void offer(void* self, wl_proxy* offer, const char* type) {
        if (QStringList& types = of(self).mOffers[offer]; types.size() < kMostTypes)
            types << QString::fromUtf8(type);
    }
    static void send(void* self, wl_proxy*, const char* type, std::int32_t descriptor) {
        of(self).send(QString::fromUtf8(type), descriptor);
    }
    static void cancelled(void* self, wl_proxy* source) {
        auto& clipboard = of(self);
        if (source != clipboard.mSource)
            return;
        clipboard.dropSource();
        Q_EMIT clipboard.lost();
    }

    static constexpr wl_registry_listener kRegistry{&global, &globalRemoved};
    static constexpr DataControlDeviceListener kDevice{&dataOffer, &selection, &finished, &primarySelection};
    static constexpr DataControlSourceListener kSource{&send, &cancelled};
    static constexpr DataControlOfferListener kOffer{&offer};
};

bool DataControlClipboard::isOffered() {
    wl_display* display = wl_display_connect(nullptr);
    return display && DataControlClipboard(display).bind();
}

std::unique_ptr<DataControlClipboard> DataControlClipboard::connectToDesktop() {
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    std::unique_ptr<DataControlClipboard> clipboard(new DataControlClipboard(display));
    if (!clipboard->bind())
        return nullptr;
    clipboard->listenToDesktop();
    return clipboard;
}

DataControlClipboard::DataControlClipboard(wl_display* display) : mDisplay(display) {}

/// Binds to the desktop's protocol. A round trip ends when the desktop has announced its interfaces, and another when it has announced the
/// clipboard's contents.
bool DataControlClipboard::bind() {
    mRegistry = wl_display_get_registry(mDisplay);
    wl_registry_add_listener(mRegistry, &Callbacks::kRegistry, this);
    if (wl_display_roundtrip(mDisplay) < 0 || !mProtocol || !mSeat)
        return false;
    mManager = static_cast<wl_proxy*>(wl_registry_bind(mRegistry, mManagerName, &mProtocol->manager, Protocol::kVersion));
    mDevice = request(mManager, Protocol::getDevice, &mProtocol->device, 0, nullptr, mSeat);
    listen(mDevice, Callbacks::kDevice, this);
    return wl_display_roundtrip(mDisplay) >= 0;
}

void DataControlClipboard::listenToDesktop() {
    mReadable = std::make_unique<QSocketNotifier>(wl_display_get_fd(mDisplay), QSocketNotifier::Read);
    connect(mReadable.get(), &QSocketNotifier::activated, this, &DataControlClipboard::readEvents);
}

DataControlClipboard::~DataControlClipboard() {
    wl_display_flush(mDisplay);
    mReadable.reset();
    for (wl_proxy* proxy : {mSource, mDevice, mManager, reinterpret_cast<wl_proxy*>(mSeat), reinterpret_cast<wl_proxy*>(mRegistry)})
        if (proxy)
            wl_proxy_destroy(proxy);
    for (const auto& [offer, types] : mOffers)
        wl_proxy_destroy(offer);
    wl_display_disconnect(mDisplay);
}

void DataControlClipboard::readEvents() {
    if (wl_display_dispatch(mDisplay) >= 0) {
        wl_display_flush(mDisplay);
        return;
    }
    mReadable->setEnabled(false);
    dropSource();
    Q_EMIT lost();
}

std::vector<AEDesc> DataControlClipboard::contents(DescType wanted) {
    if (wl_display_roundtrip(mDisplay) < 0)
        return {};
    if (mSource) { // this process itself cannot answer while it reads
        QStringList offered;
        for (const auto& [type, bytes] : mData)
            offered << type;
        return formsFromData(
            offered,
            [this](const QString& type) {
                return std::find_if(mData.begin(), mData.end(), [&](const auto& item) { return item.first == type; })->second;
            },
            wanted);
    }
    return mSelection ? formsFromData(
                            mOffers[mSelection], [this](const QString& type) { return receive(type); }, wanted)
                      : std::vector<AEDesc>();
}

QByteArray DataControlClipboard::receive(const QString& type) {
    int ends[2];
    if (!mSelection || ::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    request(mSelection, Protocol::receiveData, nullptr, 0, type.toUtf8().constData(), writeEnd.number());
    wl_display_flush(mDisplay); // wl_display_flush has sent a copy of the descriptor
    writeEnd.reset();
    return readPipe(readEnd);
}

bool DataControlClipboard::setContents(const std::vector<AEDesc>& forms) {
    wl_proxy* former = mSource; // destroyed after the new source is set, so that the clipboard is never empty
    mData = dataFromForms(forms);
    mSource = request(mManager, Protocol::createSource, &mProtocol->source, 0, nullptr);
    listen(mSource, Callbacks::kSource, this);
    for (const auto& [type, bytes] : mData) {
        request(mSource, Protocol::offerType, nullptr, 0, type.toUtf8().constData());
        for (const QLatin1StringView name : kTextNames)
            if (type == kPlainText)
                request(mSource, Protocol::offerType, nullptr, 0, name.data());
    }
    request(mDevice, Protocol::setSelection, nullptr, 0, mSource);
    if (former)
        request(former, Protocol::destroySource, nullptr, WL_MARSHAL_FLAG_DESTROY);
    return wl_display_roundtrip(mDisplay) >= 0 && mSource;
}

void DataControlClipboard::send(const QString& type, int descriptor) {
    FileDescriptor pipe(descriptor);
    const bool isText = std::find(std::begin(kTextNames), std::end(kTextNames), type) != std::end(kTextNames);
    for (const auto& [offered, bytes] : mData)
        if (offered == (isText ? QString(kPlainText) : type) &&
            findChildren<PipeWriter*>(Qt::FindDirectChildrenOnly).size() < kMostWriters) {
            new PipeWriter(std::move(pipe), bytes, this); // destroys itself when it has finished
            return;
        }
}

void DataControlClipboard::dropSource() {
    if (wl_proxy* source = std::exchange(mSource, nullptr))
        request(source, Protocol::destroySource, nullptr, WL_MARSHAL_FLAG_DESTROY);
}

void DataControlClipboard::dropOffersExcept(wl_proxy* kept) {
    for (auto it = mOffers.begin(); it != mOffers.end();) {
        if (it->first == kept) {
            ++it;
            continue;
        }
        request(it->first, Protocol::destroyOffer, nullptr, WL_MARSHAL_FLAG_DESTROY);
        it = mOffers.erase(it);
    }
}

} // namespace quoddle
