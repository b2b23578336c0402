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

    /// The view; the first call loads it by loadView() and viewDidLoad(). It is destroyed with the controller, whatever window shows it.
    QWidget* view();
    bool isViewLoaded() const { return mView != nullptr; }
    const QString& title() const { return mTitle; }
    void setTitle(const QString& title) { mTitle = title; }

protected:
    /// Makes the view, a new widget without parent; the controller takes ownership.
    virtual QWidget* loadView() = 0;
    virtual void viewDidLoad() {}
    /// Called each time the program shows the view; not when the user brings a minimised window back.
    virtual void viewDidAppear() {}
    virtual void viewDidDisappear() {}
    /// Called when the palette or the style has changed.
    virtual void viewDidChangeEffectiveAppearance() {}

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<QWidget> mView;
    QString mTitle;
};

} // namespace quoddle
