#include "tests/support/desktop/DesktopTest.h"

#include <QDir>

#include <algorithm>
#include <exception>
#include <iostream>

namespace lumenfold::test {
namespace {

QString evidenceFolder()
{
    const ::testing::TestInfo *test = ::testing::UnitTest::GetInstance()->current_test_info();
    QString name =
        QStringLiteral("%1.%2").arg(QString::fromUtf8(test->test_suite_name()), QString::fromUtf8(test->name()));
    name.replace(u'/', u'_');
    return QStringLiteral(LUMENFOLD_FAILURES_FOLDER "/") + name;
}

QImage differencesOf(const QImage &a, const QImage &b)
{
    QImage map(a.size(), QImage::Format_RGB32);
    map.fill(Qt::white);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if ((a.pixel(x, y) ^ b.pixel(x, y)) & 0x00ffffffU) {
                map.setPixel(x, y, qRgb(255, 0, 0));
            }
        }
    }
    return map;
}

} // namespace

::testing::AssertionResult samePicture(const QImage &actual, const QImage &expected)
{
    const qint64 differing = differingPixels(actual, expected);
    if (differing == 0) {
        return ::testing::AssertionSuccess();
    }
    const QDir folder(evidenceFolder());
    folder.mkpath(QStringLiteral("."));
    actual.save(folder.filePath(QStringLiteral("actual.png")));
    expected.save(folder.filePath(QStringLiteral("expected.png")));
    if (differing < 0) {
        return ::testing::AssertionFailure() << "the picture is " << actual.width() << " x " << actual.height()
                                             << ", expected " << expected.width() << " x " << expected.height();
    }
    differencesOf(actual, expected).save(folder.filePath(QStringLiteral("differences.png")));
    const QRect where = differingRegion(actual, expected);
    return ::testing::AssertionFailure() << differing << " pixels differ, in " << where.width() << " x "
                                         << where.height() << " at (" << where.x() << ", " << where.y() << ")";
}

Desktop &DesktopTest::prepare(const DesktopOptions &options)
{
    QDir(evidenceFolder()).removeRecursively();
    m_desktop = std::make_unique<Desktop>(options);
    return *m_desktop;
}

Desktop &DesktopTest::start(const DesktopOptions &options)
{
    prepare(options).startProgram();
    return *m_desktop;
}

void DesktopTest::TearDown()
{
    if (m_desktop && HasFailure()) {
        try {
            m_desktop->keepEvidence(evidenceFolder());
            std::cerr << "The screen, the clipboard and the logs are kept in " << qPrintable(evidenceFolder()) << '\n';
        } catch (const std::exception &error) {
            std::cerr << "Nothing could be kept of the failure: " << error.what() << '\n';
        }
    }
    m_desktop.reset();
}

} // namespace lumenfold::test
