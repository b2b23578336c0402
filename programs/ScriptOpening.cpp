// SPDX-License-Identifier: MIT
#include "ScriptOpening.h"

#include "Applets.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

#include <QFile>

namespace quoddle::tool {

namespace {

namespace fs = std::filesystem;

constexpr char kOpening[] = R"script(on run {program, scriptFile, shownName}
	set question to "Do you want to run the script “" & shownName & "”?" & return & return & ¬
		"A script can do whatever you can do, with all of your files. Run it only if you know where it comes from."
	try
		display dialog question buttons {"Cancel", "Run"} default button "Cancel" cancel button "Cancel" with icon caution with title "Run Script"
	on error number -128
		return
	end try
	try
		do shell script quoted form of program & " -- " & quoted form of scriptFile
	on error message
		if message does not end with "(-128)" then display alert "“" & shownName & "” could not finish." message message as critical
	end try
	return
end run
)script";

constexpr qsizetype kLongestName = 80;

} // namespace

std::string openScript(const std::string& path) {
    std::error_code error;
    const fs::path file = fs::absolute(path, error);
    if (!fs::is_regular_file(file, error))
        return path + ": there is no such script";
    const std::string program = (fs::read_symlink("/proc/self/exe", error).parent_path() / "osascript").string();
    const std::string name = printable(QFile::decodeName(file.filename().c_str()).right(kLongestName));
    ::execl(program.c_str(), "osascript", "-e", kOpening, "--", program.c_str(), file.c_str(), name.c_str(), nullptr);
    return program + ": cannot be started: " + std::strerror(errno);
}

} // namespace quoddle::tool
