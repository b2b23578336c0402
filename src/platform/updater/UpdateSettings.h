// SPDX-License-Identifier: MIT
// The settings for the updates of one applet: its maker's in the Info.plist, and the user's.
// Decision: a setting of the user overrides the maker's. Main thread only.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <chrono>
#include <optional>

#include <QDateTime>

namespace quoddle {

class UpdateSettings {
public:
    explicit UpdateSettings(std::shared_ptr<const NSBundle> bundle) : mBundle(std::move(bundle)) {}

    /// "SUFeedURL"; empty when it is no URL.
    QUrl feedURL() const;
    /// "SUPublicEDKey" in Base64; empty when there is none.
    QByteArray publicKey() const;
    /// "CFBundleVersion", else the version that is shown to the user; empty when there is neither.
    QString installedVersion() const;
    /// "CFBundleShortVersionString", else "CFBundleVersion".
    QString installedDisplayVersion() const;

    /// "SUEnableAutomaticChecks"; nullopt when neither the maker nor the user has decided.
    std::optional<bool> checksAutomatically() const;
    void setChecksAutomatically(bool checks);
    /// "SUScheduledCheckInterval" in seconds; a day by default, at least an hour.
    std::chrono::seconds interval() const;
    /// The time until the next check is due; 0 when it is.
    std::chrono::seconds timeToNextCheck() const;
    void noteCheck();
    /// The version that automatic checks do not show any more; empty for none.
    QString skippedVersion() const;
    void setSkippedVersion(const QString& version);
    /// False at the first launch, true at all later ones.
    bool noteLaunch();

private:
    QVariant decided(const QString& key) const;

    const std::shared_ptr<const NSBundle> mBundle;
};

/// The public key and the version of any bundle, as of publicKey() and installedVersion().
QByteArray publicKeyOfBundle(const NSBundle& bundle);
QString versionOfBundle(const NSBundle& bundle);

} // namespace quoddle
