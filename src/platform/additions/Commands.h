// SPDX-License-Identifier: MIT
// The commands, one function each, under the names of the files that define them. The table in StandardAdditions.cpp has their codes.
#pragma once

#include "platform/additions/Command.h"

namespace quoddle::additions {

// ShellCommand.cpp
OSErr doShellScript(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// NumberCommands.cpp
OSErr randomNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr roundNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// TextCommands.cpp
OSErr offsetOf(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr asciiCharacter(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr asciiNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// PathCommands.cpp
OSErr pathTo(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr pathToResource(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// FileAccess.cpp
OSErr openForAccess(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr closeAccess(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr getEOF(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr setEOF(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// ReadWriteCommands.cpp
OSErr readFileContents(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr writeFileContents(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// ClipboardCommands.cpp
OSErr setTheClipboard(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr theClipboard(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr clipboardInfo(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// FileInfoCommands.cpp
OSErr infoFor(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr listFolder(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr listDisks(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// SoundCommands.cpp
OSErr beep(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr getVolumeSettings(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr setVolume(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// InteractionCommands.cpp
/// Handles all commands that a dialog answers.
OSErr interact(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr displayNotification(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr chooseRemoteApplication(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// SpeechCommands.cpp
OSErr say(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

// SystemCommands.cpp
OSErr timeToGMT(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr systemAttribute(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr systemInfo(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr scriptingComponents(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr openLocation(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr mountVolume(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr summarize(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);
OSErr localizedString(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

} // namespace quoddle::additions
