// SPDX-License-Identifier: MIT
#include "dialogs/FileChooserSession.h"

#include "platform/additions/FileParameter.h"
#include "platform/panels/CommandDialog.h"

#include <QDialog>

namespace quoddle {

namespace {

AEDesc fileURL(const QUrl& url) {
    return additions::fileResult(url.toLocalFile().toStdString(), "furl"_4cc);
}

} // namespace

void beginFileChooserSession(const std::shared_ptr<NSSavePanel>& panel, std::function<AEDesc()> result) {
    DialogForm form;
    form.beginSheet = [panel](NSWindow& window, NSWindow::SheetCompletion completion) {
        panel->beginSheetModal(window, std::move(completion));
    };
    form.runModal = [panel] { return panel->runModal(); };
    form.end = [panel](int returnCode) { panel->dialog()->done(returnCode); };
    beginDialogSession(std::move(form), [result = std::move(result)](int returnCode, AEDesc& reply) {
        if (returnCode == NSModalResponseCancel)
            setCancelled(reply);
        else
            setResult(reply, result());
    });
}

AEDesc chosenFiles(const NSOpenPanel& panel, bool multipleSelectionsAllowed) {
    if (!multipleSelectionsAllowed)
        return fileURL(panel.url());
    std::vector<AEDesc> files;
    for (const QUrl& url : panel.urls())
        files.push_back(fileURL(url));
    return AEDesc::list(std::move(files));
}

} // namespace quoddle
