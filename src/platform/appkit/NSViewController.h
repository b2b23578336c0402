// SPDX-License-Identifier: MIT
// The owner of one view: it loads the view on first use and hears when it comes and goes on the screen.
// Main thread only.
#pragma once

#include <memory>

#include <QObject>
#include <QWidget>

namespace quoddle {

class NSViewController : public QObject {
    Q_OBJECT
public:
    explicit NSViewController(QObject* parent = nullptr);
    ~NSViewController() override;

    /// Loaded on first use: loadView(), then viewDidLoad(). It is destroyed with the controller, whatever window shows it.
    QWidget* view();
    bool isViewLoaded() const { return mView != nullptr; }
    const QString& title() const { return mTitle; }
    void setTitle(const QString& title) { mTitle = title; }

protected:
    /// A new widget without parent; the controller takes it.
    virtual QWidget* loadView() = 0;
    virtual void viewDidLoad() {}
    /// Each time the view is shown by the program; not when the user brings a minimised window back.
    virtual void viewDidAppear() {}
    virtual void viewDidDisappear() {}
    /// The palette or the style has changed.
    virtual void viewDidChangeEffectiveAppearance() {}

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<QWidget> mView;
    QString mTitle;
};

} // namespace quoddle
