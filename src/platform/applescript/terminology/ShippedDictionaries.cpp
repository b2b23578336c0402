// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/ShippedDictionaries.h"

#include "platform/applescript/terminology/TermTable.h"

#include <filesystem>

namespace quoddle {

namespace {

struct ServedName {
    std::string_view application;
    std::string_view file;
};

// Applications have had other names, and scripts go on using them.
constexpr ServedName kNames[] = {
    {"Finder", "Finder.sdef"},
    {"System Events", "SystemEvents.sdef"},
    {"Image Events", "ImageEvents.sdef"},
    {"Automator", "Automator.sdef"},
    {"Calendar", "Calendar.sdef"},
    {"iCal", "Calendar.sdef"},
    {"Contacts", "Contacts.sdef"},
    {"Address Book", "Contacts.sdef"},
    {"Google Chrome", "GoogleChrome.sdef"},
    {"Google Chrome Canary", "GoogleChrome.sdef"},
    {"Chromium", "GoogleChrome.sdef"},
    {"Brave Browser", "GoogleChrome.sdef"},
    {"Microsoft Edge", "GoogleChrome.sdef"},
    {"Vivaldi", "GoogleChrome.sdef"},
    {"Keynote", "Keynote.sdef"},
    {"Mail", "Mail.sdef"},
    {"Messages", "Messages.sdef"},
    {"iChat", "Messages.sdef"},
    {"Music", "Music.sdef"},
    {"iTunes", "Music.sdef"},
    {"Notes", "Notes.sdef"},
    {"Numbers", "Numbers.sdef"},
    {"OmniFocus", "OmniFocus.sdef"},
    {"Pages", "Pages.sdef"},
    {"Photos", "Photos.sdef"},
    {"QuickTime Player", "QuickTimePlayer.sdef"},
    {"QuickTime Player X", "QuickTimePlayer.sdef"},
    {"Reminders", "Reminders.sdef"},
    {"Safari", "Safari.sdef"},
    {"Safari Technology Preview", "Safari.sdef"},
    {"Script Editor", "ScriptEditor.sdef"},
    {"AppleScript Editor", "ScriptEditor.sdef"},
    {"System Information", "SystemInformation.sdef"},
    {"System Profiler", "SystemInformation.sdef"},
    {"System Preferences", "SystemPreferences.sdef"},
    {"System Settings", "SystemPreferences.sdef"},
    {"Terminal", "Terminal.sdef"},
    {"TextEdit", "TextEdit.sdef"},
    {"Xcode", "Xcode.sdef"},
};

constexpr ServedName kIdentifiers[] = {
    {"com.apple.finder", "Finder.sdef"},
    {"com.apple.systemevents", "SystemEvents.sdef"},
    {"com.apple.imageevents", "ImageEvents.sdef"},
    {"com.apple.Automator", "Automator.sdef"},
    {"com.apple.iCal", "Calendar.sdef"},
    {"com.apple.AddressBook", "Contacts.sdef"},
    {"com.google.Chrome", "GoogleChrome.sdef"},
    {"com.google.Chrome.canary", "GoogleChrome.sdef"},
    {"org.chromium.Chromium", "GoogleChrome.sdef"},
    {"com.brave.Browser", "GoogleChrome.sdef"},
    {"com.microsoft.edgemac", "GoogleChrome.sdef"},
    {"com.vivaldi.Vivaldi", "GoogleChrome.sdef"},
    {"com.apple.iWork.Keynote", "Keynote.sdef"},
    {"com.apple.mail", "Mail.sdef"},
    {"com.apple.MobileSMS", "Messages.sdef"},
    {"com.apple.iChat", "Messages.sdef"},
    {"com.apple.Music", "Music.sdef"},
    {"com.apple.iTunes", "Music.sdef"},
    {"com.apple.Notes", "Notes.sdef"},
    {"com.apple.iWork.Numbers", "Numbers.sdef"},
    {"com.omnigroup.OmniFocus2", "OmniFocus.sdef"},
    {"com.omnigroup.OmniFocus3", "OmniFocus.sdef"},
    {"com.omnigroup.OmniFocus4", "OmniFocus.sdef"},
    {"com.apple.iWork.Pages", "Pages.sdef"},
    {"com.apple.Photos", "Photos.sdef"},
    {"com.apple.QuickTimePlayerX", "QuickTimePlayer.sdef"},
    {"com.apple.reminders", "Reminders.sdef"},
    {"com.apple.Safari", "Safari.sdef"},
    {"com.apple.SafariTechnologyPreview", "Safari.sdef"},
    {"com.apple.ScriptEditor2", "ScriptEditor.sdef"},
    {"com.apple.SystemProfiler", "SystemInformation.sdef"},
    {"com.apple.systempreferences", "SystemPreferences.sdef"},
    {"com.apple.Terminal", "Terminal.sdef"},
    {"com.apple.TextEdit", "TextEdit.sdef"},
    {"com.apple.dt.Xcode", "Xcode.sdef"},
};

} // namespace

std::string shippedDictionariesFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "share/quoddle/dictionaries").string();
}

std::string_view shippedDictionaryFor(std::string_view application, bool isBundleIdentifier) {
    const auto names = isBundleIdentifier ? std::span<const ServedName>(kIdentifiers) : std::span<const ServedName>(kNames);
    for (const ServedName& served : names) {
        if (std::ranges::equal(served.application, application, {}, asciiLower, asciiLower))
            return served.file;
    }
    return {};
}

} // namespace quoddle
