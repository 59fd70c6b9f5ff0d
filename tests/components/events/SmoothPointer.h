#pragma once

#include "tests/support/desktop/Process.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <memory>

namespace lumenfold::test {

/// An X server with a pointing device that scrolls smoothly, which Xvfb has not: Xorg without hardware, and its driver
/// that takes the device's movements from a socket. One notch is 120 units.
class SmoothPointer {
public:
    /// Throws std::runtime_error when Xorg, its dummy video driver or its inputtest driver is not there.
    SmoothPointer();
    ~SmoothPointer();
    SmoothPointer(const SmoothPointer &) = delete;
    SmoothPointer &operator=(const SmoothPointer &) = delete;

    [[nodiscard]] QByteArray display() const { return m_display; }

    /// Each call returns when the server has dealt with it.
    void move(double dx, double dy);
    void scroll(double horizontal, double vertical);
    /// As drivers report a wheel that has nothing but notches.
    void pressAndRelease(int button);

private:
    struct Valuators;
    struct Motion;
    struct ButtonChange;

    void connectToDriver(const QByteArray &socketPath);
    void send(const void *message, std::size_t length);
    void receive();
    void waitForServer();

    QTemporaryDir m_folder;
    std::unique_ptr<Process> m_process;
    QByteArray m_display;
    int m_socket = -1;
};

} // namespace lumenfold::test
