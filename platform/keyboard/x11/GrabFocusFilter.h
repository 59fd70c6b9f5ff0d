#pragma once

#include <QAbstractNativeEventFilter>

namespace lumenfold::x11 {

/// Keeps the toolkit from taking a grab of the keyboard for a loss of the focus.
///
/// The server tells the focused window of every grab as if the focus had left it, and the toolkit does not look at the
/// difference: each press of a hotkey, and a tap on the whole keyboard all the more, would deactivate the program's own
/// front window. A focus that really changes during a grab is told in another way and passes. Installed on the
/// application for as long as it lives.
class GrabFocusFilter : public QAbstractNativeEventFilter {
public:
    GrabFocusFilter();
    GrabFocusFilter(const GrabFocusFilter &) = delete;
    GrabFocusFilter &operator=(const GrabFocusFilter &) = delete;
    ~GrabFocusFilter() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
};

} // namespace lumenfold::x11
