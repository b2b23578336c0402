// SPDX-License-Identifier: MIT
// The settings for the updates of one applet: those of its maker in the Info.plist, and the user's decisions.
// One decision: where both have a word about the same thing, the user's holds.
// Main thread only.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <chrono>
#include <optional>

#include <QDateTime>

namespace quoddle {

class UpdateSettings {
public:
    explicit UpdateSettings(std::shared_ptr<const NSBundle> bundle) : mBundle(std::move(bundle)) {}

    /// "SUFeedURL"; empty when it is no address.
    QUrl feedURL() const;
    /// "SUPublicEDKey" in Base64; empty for none.
    QByteArray publicKey() const;
    /// "CFBundleVersion", or else the version that people are told; empty for none.
    QString installedVersion() const;
    /// "CFBundleShortVersionString", or else the former.
    QString installedDisplayVersion() const;

    /// "SUEnableAutomaticChecks". Empty: nobody has decided.
    std::optional<bool> checksAutomatically() const;
    void setChecksAutomatically(bool checks);
    /// "SUScheduledCheckInterval" in seconds: a day unless somebody says otherwise, an hour at least.
    std::chrono::seconds interval() const;
    /// From now until the next look is due; none when it is.
    std::chrono::seconds timeToNextCheck() const;
    void noteCheck();
    /// The user does not want to hear of this version by itself.
    QString skippedVersion() const;
    void setSkippedVersion(const QString& version);
    /// False for the first launch, and true from then on.
    bool noteLaunch();

private:
    QVariant decided(const QString& key) const;

    const std::shared_ptr<const NSBundle> mBundle;
};

/// For any bundle what UpdateSettings has for its own: publicKey() and installedVersion().
QByteArray publicKeyOfBundle(const NSBundle& bundle);
QString versionOfBundle(const NSBundle& bundle);

} // namespace quoddle
