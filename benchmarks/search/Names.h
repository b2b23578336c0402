// SPDX-License-Identifier: MIT
// Makes names of files and folders like those in a home folder: words, numbers, extensions. They are the same each time.
#pragma once

#include <random>
#include <string>

class Names {
public:
    std::string file() {
        std::string name = one(kWords) + one(kSeparators) + one(kWords) + one(kSeparators) + std::to_string(mEngine() % 100'000);
        return name + one(kExtensions);
    }
    std::string folder() { return one(kWords) + " " + std::to_string(mNumber++); }
    std::size_t below(std::size_t limit) { return mEngine() % limit; }

private:
    static constexpr const char* kWords[] = {"report", "Invoice", "holiday", "Photo",  "IMG_",    "meeting",    "notes",  "Budget",
                                             "draft",  "final",   "scan",    "Letter", "backup",  "Screenshot", "résumé", "Übersicht",
                                             "main",   "index",   "test",    "config", "project", "music",      "recipe", "Map"};
    static constexpr const char* kSeparators[] = {" ", "-", "_", ""};
    static constexpr const char* kExtensions[] = {".pdf", ".txt", ".jpg", ".png", ".odt", ".cpp", ".h", ".html", ".mp3", ".tar.gz", ""};

    template<std::size_t N>
    std::string one(const char* const (&list)[N]) {
        return list[mEngine() % N];
    }
    std::mt19937 mEngine{7};
    int mNumber = 0;
};
