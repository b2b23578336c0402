// SPDX-License-Identifier: MIT
// The applications that a person could choose: those of the desktop's menu, applets that are installed, applets that run.
// Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <vector>

#include <QAbstractListModel>
#include <QIcon>

namespace quoddle {

struct ListedApplication {
    QString name;
    QString path; ///< the path of an applet's bundle, else of the desktop entry
    QString icon; ///< a name in the icon theme or a path; empty: the applet's own icon
};

/// The applications in the order of their names. Reads every desktop entry.
std::vector<ListedApplication> listApplications();

/// The value that a script gets: an application that it can send commands to, or an alias.
AEDesc descriptorOfApplication(const ListedApplication& application, bool asAlias);

class ApplicationListModel : public QAbstractListModel {
    Q_OBJECT
public:
    /// Icons are looked for only after the list has been painted for the first time, because the theme has many folders.
    explicit ApplicationListModel(std::vector<ListedApplication> applications, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    const ListedApplication& at(int row) const { return mApplications[static_cast<std::size_t>(row)]; }
    void showIcons();

private:
    const QIcon& iconAt(std::size_t row) const;

    const std::vector<ListedApplication> mApplications;
    mutable std::vector<QIcon> mIcons; // the icon of each row; filled as rows are painted
    bool mShowsIcons = false;
};

} // namespace quoddle
