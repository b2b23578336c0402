// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Display.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace quoddle::language {

namespace {

struct Row {
    OSStatus number;
    std::u16string_view text;
};

// Sorted by number, highest first, like kTemplates.
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
    {-601, u"Not enough room to launch application with special requirements."},
    {-606, u"Application is background-only."},
    {-607, u"Buffer is too small."},
    {-608, u"No outstanding high-level event."},
    {-609, u"Connection is invalid."},
    {-904, u"Not enough system memory to connect to remote application."},
    {-905, u"Remote access isn’t allowed."},
    {-915, u"Can’t find remote machine."},
    {-927, u"Unable to authenticate user."},
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
    {-1763, u"Couldn’t write data because C and Objective-C pointers cannot be saved in scripts."},
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
    {-2780, u"A word is ambiguous because it is imported twice."},
    {-2786, u"Can’t make some data into the expected type."},
    {-5000, u"Network file permission error."},
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

// The texts with objects: %1 is the offending object, %2 the expected type.
constexpr Row kTemplates[] = {
    {-34, u"Disk %1 is full."},
    {-35, u"Disk %1 wasn’t found."},
    {-37, u"Bad name for file %1."},
    {-38, u"File %1 wasn’t open."},
    {-40, u"Tried to position before beginning of file %1."},
    {-43, u"File %1 wasn’t found."},
    {-44, u"Disk %1 is write protected."},
    {-45, u"File %1 is locked."},
    {-46, u"Disk %1 is locked."},
    {-47, u"File %1 is busy."},
    {-48, u"Duplicate file name %1."},
    {-49, u"File %1 is already open."},
    {-120, u"Folder %1 wasn’t found."},
    {-124, u"Disk %1 is disconnected."},
    {-906, u"%1 isn’t running or program linking isn’t enabled."},
    {-1700, u"Can’t make %1 into type %2."},
    {-1701, u"The %1 parameter is missing for %2."},
    {-1703, u"%1 is the wrong type."},
    {-1708, u"%1 doesn’t understand the “%2” message."},
    {-1715, u"The parameter “%1” is not understood."},
    {-1717, u"The handler %1 is not defined."},
    {-1719, u"Can’t get %1. Invalid index."},
    {-1721, u"%1 doesn’t match the parameters %2 for."},
    {-1723, u"Can’t get %1. Access not allowed."},
    {-1728, u"Can’t get %1."},
    {-2701, u"Can’t divide %1 by zero."},
    {-2703, u"%1 can’t be launched because it is not an application."},
    {-2704, u"%1 isn’t scriptable."},
    {-2710, u"Can’t make class %1."},
    {-2720, u"Can’t both consider and ignore %1."},
    {-2740, u"A %1 can’t go after this %2."},
    {-2741, u"Expected %1 but found %2."},
    {-2750, u"The %1 parameter is specified more than once."},
    {-2751, u"The %1 property is specified more than once."},
    {-2752, u"The %1 handler is specified more than once."},
    {-2753, u"The variable %1 is not defined."},
    {-2754, u"Can’t declare %1 as both a local and global variable."},
    {-2761, u"%1 is illegal as a formal parameter."},
    {-2762, u"%1 is not a parameter name for the event %2."},
    {-2784, u"Can’t continue %2."},
    {-2785, u"Can’t make %1 into the expected type."},
    {-2787, u"Some parameter is missing for %2."},
    {-2788, u"Syntax error: %1."},
    {-2789, u"The %1 handler is specified more than once, or there were top-level commands in addition to the %1 handler."},
    {-2791, u"The parameter “%1” is not understood."},
    {-2797, u"%1 is not type %2."},
    {-10001, u"%1 is the wrong type."},
    {-10003, u"Can’t set %1 to %2. Access not allowed."},
    {-10006, u"Can’t set %1 to %2."},
    {-30720, u"Invalid date and time %1."},
};

template<std::size_t N>
const Row* find(const Row (&rows)[N], OSStatus number) {
    const Row* row =
        std::lower_bound(rows, rows + N, number, [](const Row& candidate, OSStatus wanted) { return candidate.number > wanted; });
    return row != rows + N && row->number == number ? row : nullptr;
}

} // namespace

std::u16string messageFor(OSStatus number) {
    if (const Row* row = find(kTexts, number))
        return std::u16string(row->text);
    const std::string digits = std::to_string(number);
    return u"An error of type " + std::u16string(digits.begin(), digits.end()) + u" has occurred.";
}

std::u16string messageFor(OSStatus number, std::u16string_view object, std::u16string_view type) {
    const Row* row = find(kTemplates, number);
    if (!row)
        return messageFor(number);
    std::u16string message;
    for (std::size_t i = 0; i < row->text.size(); ++i) {
        if (row->text[i] != u'%') {
            message += row->text[i];
            continue;
        }
        ++i;
        message += row->text[i] == u'1' ? object : type;
    }
    return message;
}

} // namespace quoddle::language
