#include "tests/components/events/SmoothPointer.h"

#include "tests/support/desktop/Wait.h"

#include <QFile>

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;

const QByteArray configuration = R"(
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoEnableDevices" "false"
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
    InputDevice "smooth" "CorePointer"
EndSection
Section "InputDevice"
    Identifier "smooth"
    Driver "inputtest"
    Option "SocketPath" "SOCKET"
    Option "DeviceType" "Pointer"
    Option "PointerButtonCount" "10"
EndSection
Section "Device"
    Identifier "device"
    Driver "dummy"
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "device"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Modes "1024x768"
    EndSubSection
EndSection
)";

/// The driver's protocol, inputtest 1.1; see inputtestdrv(4).
constexpr std::uint16_t protocolVersion = 1;
constexpr std::size_t valuatorCount = 64;
constexpr std::size_t horizontalAxis = 2;
constexpr std::size_t verticalAxis = 3;

enum class Message : std::uint32_t { clientVersion = 0, waitForSync = 1, motion = 2, button = 4 };

struct Header {
    std::uint32_t length;
    Message type;
};

struct ClientVersion {
    Header header{sizeof(ClientVersion), Message::clientVersion};
    std::uint16_t major = protocolVersion;
    std::uint16_t minor = protocolVersion;
};

} // namespace

struct SmoothPointer::Valuators {
    std::uint32_t hasUnaccelerated = 0;
    std::array<std::uint8_t, valuatorCount / 8> mask{};
    std::array<double, valuatorCount> values{};
    std::array<double, valuatorCount> unaccelerated{};

    void set(std::size_t axis, double value)
    {
        mask[axis / 8] = static_cast<std::uint8_t>(mask[axis / 8] | 1U << axis % 8);
        values[axis] = value;
    }
};

struct SmoothPointer::Motion {
    Header header{sizeof(Motion), Message::motion};
    std::uint32_t isAbsolute = 0;
    Valuators valuators;
};

struct SmoothPointer::ButtonChange {
    Header header{sizeof(ButtonChange), Message::button};
    std::int32_t isAbsolute = 0;
    std::int32_t button = 0;
    std::uint32_t isPress = 0;
    Valuators valuators;
};

SmoothPointer::SmoothPointer()
{
    const QString socketPath = m_folder.filePath(u"pointer"_s);
    const QString configurationPath = m_folder.filePath(u"xorg.conf"_s);
    QFile file(configurationPath);
    if (!file.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("no configuration for Xorg");
    }
    file.write(QByteArray(configuration).replace("SOCKET", socketPath.toUtf8()));
    file.close();

    int pipe[2];
    if (::pipe(pipe) != 0) {
        throw std::runtime_error("no pipe for Xorg");
    }
    m_process = std::make_unique<Process>(ProcessOptions{
        .program = u"Xorg"_s,
        .arguments = {u"-displayfd"_s, QString::number(pipe[1]), u"-config"_s, configurationPath, u"-logfile"_s,
                      m_folder.filePath(u"xorg.log"_s), u"-noreset"_s, u"-novtswitch"_s, u"-sharevts"_s, u"-nolisten"_s,
                      u"tcp"_s},
        .logFile = m_folder.filePath(u"output.log"_s),
        .inheritedDescriptors = {pipe[1]},
    });
    ::close(pipe[1]);
    char byte = 0;
    while (::read(pipe[0], &byte, 1) == 1 && byte != '\n') {
        m_display.append(byte);
    }
    ::close(pipe[0]);
    if (m_display.isEmpty()) {
        throw std::runtime_error("Xorg did not start: " + m_process->log().toStdString());
    }
    m_display.prepend(':');
    connectToDriver(socketPath.toUtf8());
}

SmoothPointer::~SmoothPointer()
{
    if (m_socket >= 0) {
        ::close(m_socket);
    }
}

void SmoothPointer::move(double dx, double dy)
{
    Motion motion;
    motion.valuators.set(0, dx);
    motion.valuators.set(1, dy);
    send(&motion, sizeof motion);
    waitForServer();
}

void SmoothPointer::scroll(double horizontal, double vertical)
{
    Motion motion;
    if (horizontal != 0) {
        motion.valuators.set(horizontalAxis, horizontal);
    }
    if (vertical != 0) {
        motion.valuators.set(verticalAxis, vertical);
    }
    send(&motion, sizeof motion);
    waitForServer();
}

void SmoothPointer::pressAndRelease(int button)
{
    ButtonChange change;
    change.button = button;
    for (const std::uint32_t isPress : {1U, 0U}) {
        change.isPress = isPress;
        send(&change, sizeof change);
        waitForServer();
    }
}

void SmoothPointer::connectToDriver(const QByteArray &socketPath)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        throw std::runtime_error("the path of the driver's socket is too long");
    }
    std::memcpy(address.sun_path, socketPath.constData(), static_cast<std::size_t>(socketPath.size()));
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    waitUntil("the driver's socket",
              [&] { return ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0; });
    const ClientVersion version;
    send(&version, sizeof version);
    receive();
}

void SmoothPointer::send(const void *message, std::size_t length)
{
    if (::send(m_socket, message, length, MSG_NOSIGNAL) != static_cast<ssize_t>(length)) {
        throw std::runtime_error("the driver does not listen");
    }
}

void SmoothPointer::receive()
{
    std::array<char, 64> answer{};
    if (::recv(m_socket, answer.data(), answer.size(), 0) <= 0) {
        throw std::runtime_error("the driver hung up");
    }
}

void SmoothPointer::waitForServer()
{
    const Header header{sizeof header, Message::waitForSync};
    send(&header, sizeof header);
    receive();
}

} // namespace lumenfold::test
