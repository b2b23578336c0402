// SPDX-License-Identifier: MIT
// The command "choose URL". One decision: it offers the addresses that the user has kept, in the file manager's bookmarks and by earlier
// answers; the network is not searched.
#include "platform/foundation/Bookmarks.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/panels/ChooseURLPanel.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandParameters.h"

#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaximumRemembered = 10;
constexpr auto kRemembered = "ChooseURL/Addresses"_L1;

/// A kind of servers that a script may ask for, with the schemes of its addresses; the first scheme is the usual one.
struct Kind {
    FourCharCode code;
    std::vector<QString> schemes;
};

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> sKinds = {
        {"esvw"_4cc, {u"http"_s, u"https"_s}}, {"esvf"_4cc, {u"ftp"_s, u"ftps"_s, u"sftp"_s}},
        {"esvt"_4cc, {u"telnet"_s, u"ssh"_s}}, {"esva"_4cc, {u"smb"_s, u"nfs"_s, u"sftp"_s, u"dav"_s, u"davs"_s, u"afp"_s}},
        {"esvn"_4cc, {u"nntp"_s, u"news"_s}},  {"esvd"_4cc, {u"ldap"_s, u"ldaps"_s}},
        {"esvm"_4cc, {u"rtsp"_s, u"mms"_s}},   {"esve"_4cc, {u"eppc"_s}},
    };
    return sKinds;
}

/// The schemes of the servers that the script asks for; empty: all schemes.
QStringList wantedSchemes(const AEDesc& event) {
    QStringList schemes;
    const AEDesc* showing = event.find("cusv"_4cc);
    if (!showing)
        return schemes;
    const AEDesc list = showing->isList() ? *showing : AEDesc::list({*showing});
    for (const AEDesc& item : list.items())
        for (const Kind& kind : kinds())
            if (kind.code == item.code())
                for (const QString& scheme : kind.schemes)
                    schemes << scheme;
    return schemes;
}

QStringList bookmarkedServers() {
    QStringList addresses;
    for (const Bookmark& bookmark : fileManagerBookmarks())
        if (!bookmark.address.isLocalFile())
            addresses << bookmark.address.toString(QUrl::FullyEncoded);
    return addresses;
}

QStringList knownAddresses(const QStringList& schemes) {
    QStringList addresses = standardUserDefaults().value(kRemembered).toStringList() + bookmarkedServers();
    addresses.removeDuplicates();
    addresses.removeIf([&](const QString& address) { return !schemes.isEmpty() && !schemes.contains(QUrl(address).scheme()); });
    return addresses;
}

void remember(const QString& address) {
    QStringList addresses = standardUserDefaults().value(kRemembered).toStringList();
    addresses.removeAll(address);
    addresses.prepend(address);
    standardUserDefaults().setValue(kRemembered, addresses.mid(0, kMaximumRemembered));
}

/// Whether the address begins with a scheme. "example.com:80" does not, although QUrl takes "example.com" there for one.
bool hasScheme(const QString& address) {
    const qsizetype colon = address.indexOf(u':');
    return colon > 0 && !QUrl(address).scheme().isEmpty() && !address.left(colon).contains(u'.') &&
           !(colon + 1 < address.size() && address[colon + 1].isDigit());
}

} // namespace

CommandDialog chooseURLDialog(const AEDesc& event, const Asker&) {
    const QStringList schemes = wantedSchemes(event);
    const bool editable = !event.find("pedu"_4cc) || booleanParameter(event, "pedu"_4cc);
    auto panel = std::make_shared<ChooseURLPanel>(knownAddresses(schemes), editable);
    const ChooseURLPanel* shown = panel.get();
    return {.dialog = panel, .answer = [shown, schemes](int returnCode, AEDesc& reply) {
                if (returnCode != QDialog::Accepted)
                    return setCancelled(reply);
                QString address = shown->address();
                if (!hasScheme(address))
                    address = schemes.value(0, u"http"_s) + u"://"_s + address;
                remember(address);
                setResult(reply, descriptorOf(address));
            }};
}

} // namespace quoddle
