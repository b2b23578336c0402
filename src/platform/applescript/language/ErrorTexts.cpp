// SPDX-License-Identifier: MIT
#include "platform/applescript/language/ErrorTexts.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace quoddle::language {

namespace {

struct Row {
    OSStatus number;
    std::u16string_view text;
};

// Sorted by number, highest first.
constexpr Row kTexts[] = {
    {-34, u"Disk is full."},
    {-35, u"Disk wasn’t found."},
    {-37, u"Bad name for file."},
    {-38, u"File wasn’t open."},
    {-39, u"End of file error."},
    {-40, u"Tried to position before beginning of file."},
    {-42, u"Too many files open."},
    {-43, u"File wasn’t found."},
    {-44, u"Disk is write protected."},
    {-45, u"File is locked."},
    {-46, u"Disk is locked."},
    {-47, u"File is busy."},
    {-48, u"Duplicate file name."},
    {-49, u"File is already open."},
    {-50, u"Parameter error."},
    {-51, u"File reference number error."},
    {-54, u"File permission error."},
    {-61, u"File not open with write permission."},
    {-108, u"Out of memory."},
    {-120, u"Folder wasn’t found."},
    {-124, u"Disk is disconnected."},
    {-128, u"User canceled."},
    {-192, u"A resource wasn’t found."},
    {-600, u"Application isn’t running."},
    {-606, u"Application is background-only."},
    {-607, u"Buffer is too small."},
    {-608, u"No outstanding high-level event."},
    {-609, u"Connection is invalid."},
    {-1700, u"Can’t make some data into the expected type."},
    {-1701, u"Some parameter is missing."},
    {-1702, u"Some data could not be read."},
    {-1703, u"Some data was the wrong type."},
    {-1704, u"Some parameter was invalid."},
    {-1705, u"Operation involving a list item failed."},
    {-1706, u"Need a newer version of the Apple Event Manager."},
    {-1707, u"Event isn’t an Apple event."},
    {-1708, u"The script doesn’t understand the message."},
    {-1709, u"AEResetTimer was passed an invalid reply."},
    {-1710, u"Invalid sending mode was passed."},
    {-1711, u"User canceled out of wait loop for reply or receipt."},
    {-1712, u"AppleEvent timed out."},
    {-1713, u"No user interaction allowed."},
    {-1714, u"Wrong keyword for a special function."},
    {-1715, u"Some parameter wasn’t understood."},
    {-1716, u"Unknown Apple event address type."},
    {-1717, u"The handler is not defined."},
    {-1718, u"Reply has not yet arrived."},
    {-1719, u"Can’t get reference. Invalid index."},
    {-1720, u"Invalid range."},
    {-1721, u"Wrong number of parameters."},
    {-1723, u"Can’t get reference. Access not allowed."},
    {-1725, u"Illegal logical operator called."},
    {-1726, u"Illegal comparison or logical."},
    {-1727, u"Expected a reference."},
    {-1728, u"Can’t get reference."},
    {-1729, u"Object counting procedure returned a negative count."},
    {-1730, u"Container specified was an empty list."},
    {-1731, u"Unknown object type."},
    {-1750, u"Scripting component error."},
    {-1751, u"Invalid script id."},
    {-1752, u"Script doesn’t seem to belong to AppleScript."},
    {-1753, u"Script error."},
    {-1754, u"Invalid selector given."},
    {-1755, u"Invalid access."},
    {-1756, u"Source not available."},
    {-1757, u"No such dialect."},
    {-1758, u"Data couldn’t be read because its format is obsolete."},
    {-1759, u"Data couldn’t be read because its format is too new."},
    {-1760, u"Recording is already on."},
    {-2700, u"An error has occurred."},
    {-2701, u"Can’t divide by zero."},
    {-2702, u"The result of a numeric operation was too large."},
    {-2703, u"The file can’t be launched because it is not an application."},
    {-2704, u"The application isn’t scriptable."},
    {-2705, u"The application has a corrupted dictionary."},
    {-2706, u"Stack overflow."},
    {-2707, u"Internal table overflow."},
    {-2708, u"Attempt to create a value larger than the allowable size."},
    {-2709, u"Can’t get the application’s event dictionary."},
    {-2720, u"Can’t both consider and ignore something."},
    {-2721, u"Can’t perform operation on text longer than 32K bytes."},
    {-2740, u"A syntax error was found."},
    {-2753, u"The variable is not defined."},
    {-2755, u"Exit statement was not in a repeat loop."},
    {-2760, u"Tell statements are nested too deeply."},
    {-2763, u"No result was returned from some part of this expression."},
    {-10000, u"Apple event handler failed."},
    {-10001, u"A descriptor type mismatch occurred."},
    {-10002, u"Invalid key form."},
    {-10003, u"Can’t set reference. Access not allowed."},
    {-10004, u"A privilege violation occurred."},
    {-10005, u"The read operation wasn’t allowed."},
    {-10006, u"Can’t set reference."},
    {-10007, u"The index of the event is too large to be valid."},
    {-10008, u"The specified object is a property, not an element."},
    {-10009, u"Can’t supply the requested type for the data."},
    {-10010, u"Handler can’t handle objects of this class."},
    {-10011, u"Couldn’t handle this command because it wasn’t part of the current transaction."},
    {-10012, u"The transaction to which this command belonged isn’t a valid transaction."},
    {-10013, u"There is no user selection."},
    {-10014, u"Handler only handles single objects."},
    {-10015, u"Can’t undo the previous Apple event or user action."},
    {-10016, u"Handler does not allow remote events."},
    {-10023, u"That’s an incorrect enumerated value for that property."},
    {-10024, u"Can’t make or move that element into that container."},
    {-10025, u"That setting conflicts with other settings for that object."},
    {-30720, u"Invalid date and time."},
};

} // namespace

std::u16string messageFor(OSStatus number) {
    auto row = std::lower_bound(std::begin(kTexts), std::end(kTexts), number,
                                [](const Row& candidate, OSStatus wanted) { return candidate.number > wanted; });
    if (row != std::end(kTexts) && row->number == number)
        return std::u16string(row->text);
    const std::string digits = std::to_string(number);
    return u"An error of type " + std::u16string(digits.begin(), digits.end()) + u" has occurred.";
}

} // namespace quoddle::language
