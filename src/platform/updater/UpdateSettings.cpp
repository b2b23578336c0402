// SPDX-License-Identifier: MIT
#include "platform/updater/UpdateSettings.h"

#include "platform/foundation/NSUserDefaults.h"

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kAutomaticKey = QStringLiteral("SUEnableAutomaticChecks");
const QString kIntervalKey = QStringLiteral("SUScheduledCheckInterval");
const QString kLastCheckKey = QStringLiteral("SULastCheckTime");
const QString kSkippedKey = QStringLiteral("SUSkippedVersion");
const QString kLaunchedKey = QStringLiteral("SUHasLaunchedBefore");
constexpr std::chrono::seconds kUsualInterval = 24h, kShortestInterval = 1h, kLongestInterval = 24h * 365;

} // namespace

QByteArray publicKeyOfBundle(const NSBundle& bundle) {
    return bundle.infoDictionary().value(u"SUPublicEDKey"_s).toString().trimmed().toLatin1();
}

QString versionOfBundle(const NSBundle& bundle) {
    const QVariantMap info = bundle.infoDictionary();
    const QString version = info.value(u"CFBundleVersion"_s).toString().trimmed();
    return version.isEmpty() ? info.value(u"CFBundleShortVersionString"_s).toString().trimmed() : version;
}

QVariant UpdateSettings::decided(const QString& key) const {
    const QVariant own = standardUserDefaults().value(key);
    return own.isValid() ? own : mBundle->infoDictionary().value(key);
}

QUrl UpdateSettings::feedURL() const {
    const QUrl url(mBundle->infoDictionary().value(u"SUFeedURL"_s).toString().trimmed(), QUrl::StrictMode);
    return url.isValid() && !url.isRelative() ? url : QUrl();
}

QByteArray UpdateSettings::publicKey() const {
    return publicKeyOfBundle(*mBundle);
}

QString UpdateSettings::installedVersion() const {
    return versionOfBundle(*mBundle);
}

QString UpdateSettings::installedDisplayVersion() const {
    const QString version = mBundle->infoDictionary().value(u"CFBundleShortVersionString"_s).toString().trimmed();
    return version.isEmpty() ? installedVersion() : version;
}

std::optional<bool> UpdateSettings::checksAutomatically() const {
    const QVariant answer = decided(kAutomaticKey);
    return answer.isValid() ? std::optional(boolValue(answer)) : std::nullopt;
}

void UpdateSettings::setChecksAutomatically(bool checks) {
    standardUserDefaults().setValue(kAutomaticKey, checks);
}

std::chrono::seconds UpdateSettings::interval() const {
    const double seconds = decided(kIntervalKey).toDouble();
    if (!(seconds > 0))
        return kUsualInterval;
    return std::chrono::seconds(static_cast<std::int64_t>(
        std::clamp(seconds, static_cast<double>(kShortestInterval.count()), static_cast<double>(kLongestInterval.count()))));
}

std::chrono::seconds UpdateSettings::timeToNextCheck() const {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime last = QDateTime::fromString(standardUserDefaults().value(kLastCheckKey).toString(), Qt::ISODate);
    if (!last.isValid() || last > now) // a time in the future comes from a wrong clock and must not put off checks for years
        return 0s;
    return std::max(0s, interval() - std::chrono::seconds(last.secsTo(now)));
}

void UpdateSettings::noteCheck() {
    standardUserDefaults().setValue(kLastCheckKey, QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
}

QString UpdateSettings::skippedVersion() const {
    return standardUserDefaults().value(kSkippedKey).toString();
}

void UpdateSettings::setSkippedVersion(const QString& version) {
    standardUserDefaults().setValue(kSkippedKey, version);
}

bool UpdateSettings::noteLaunch() {
    const bool wasLaunched = standardUserDefaults().value(kLaunchedKey).toBool();
    if (!wasLaunched)
        standardUserDefaults().setValue(kLaunchedKey, true);
    return wasLaunched;
}

} // namespace quoddle
