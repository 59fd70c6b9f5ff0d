#include "editor/bridge/DataUrl.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

const QDateTime afternoon(QDate(2026, 3, 7), QTime(16, 5, 9), Qt::LocalTime);

TEST(DataUrlTest, APictureIsBase64WithoutLineBreaks)
{
    const QByteArray png(300, '\xff');
    const QByteArray url = pngDataURL(png);
    EXPECT_TRUE(url.startsWith("data:image/png;base64,"));
    EXPECT_FALSE(url.contains('\n'));
    EXPECT_EQ(readExport(url).value(), png);
}

TEST(DataUrlTest, AnExportIsWhatStandsBehindTheFirstComma)
{
    EXPECT_EQ(readExport("data:image/png;base64,QUJD").value(), "ABC");
    EXPECT_EQ(readExport("whatever,QUJD").value(), "ABC");
    EXPECT_EQ(readExport(",").value(), "");
    EXPECT_EQ(readExport("data:image/png;base64,QUJD,QUJD").error(), ExportTrouble::undecodable);
    EXPECT_EQ(readExport("data:image/png;base64,QUJ").error(), ExportTrouble::undecodable);
    EXPECT_EQ(readExport("data:image/png;base64,Q U J D").error(), ExportTrouble::undecodable);
    EXPECT_EQ(readExport("data:image/png;base64,QUJ\xc3\xa4").error(), ExportTrouble::undecodable);
}

TEST(DataUrlTest, AnExportWithoutACommaIsNone)
{
    EXPECT_EQ(readExport("data:image/png;base64").error(), ExportTrouble::noComma);
    EXPECT_EQ(readExport("").error(), ExportTrouble::noComma);
}

TEST(DownloadTest, HasATypeAndBytes)
{
    const auto download = readDownload("data:image/JPEG;base64,QUJD");
    ASSERT_TRUE(download);
    EXPECT_EQ(download->mimeType, QStringLiteral("image/jpeg"));
    EXPECT_EQ(download->bytes, "ABC");
    EXPECT_EQ(readDownload("data:image/png;name=x.png;base64,QUJD")->mimeType, QStringLiteral("image/png"));
    EXPECT_EQ(readDownload("DATA:image/png;base64,QUJD")->bytes, "ABC");
    EXPECT_EQ(readDownload("data:;base64,QUJD")->mimeType, QStringLiteral("application/octet-stream"));
    EXPECT_EQ(readDownload("data:image/png;base64,/%2BA%3D")->bytes, QByteArray("\xff\xe0"));
}

TEST(DownloadTest, IsMalformedWithoutSchemeCommaOrBase64)
{
    for (const char *address : {"", "data", "data:", "dat,", "http://example.org/,", "image/png;base64,QUJD",
                                "data:image/png;base64", "data:image/png,QUJD", "data:,QUJD", "data:base64,QUJD",
                                "data:image/png;BASE64,QUJD", "data:image/png; base64,QUJD"}) {
        const auto download = readDownload(address);
        ASSERT_FALSE(download) << address;
        EXPECT_EQ(download.error(), DownloadTrouble::malformed) << address;
    }
}

TEST(DownloadTest, WhatIsNotBase64IsUndecodable)
{
    for (const char *address : {"data:image/png;base64,!", "data:image/png;base64,QUJ", "data:;base64,QUJD,"}) {
        const auto download = readDownload(address);
        ASSERT_FALSE(download) << address;
        EXPECT_EQ(download.error(), DownloadTrouble::undecodable) << address;
    }
}

TEST(DownloadTest, IsNamedByTheSecondAndItsType)
{
    struct Row {
        const char *type;
        const char *extension;
    };
    for (const Row row :
         {Row{"image/png", "png"}, Row{"image/jpeg", "jpg"}, Row{"image/jpg", "jpg"}, Row{"image/webp", "webp"},
          Row{"image/gif", "gif"}, Row{"image/svg+xml", "svg"}, Row{"application/pdf", "pdf"}, Row{"text/plain", "png"},
          Row{"application/octet-stream", "png"}, Row{"text/html", "png"}, Row{"", "png"}}) {
        EXPECT_EQ(downloadName(afternoon, QString::fromUtf8(row.type)),
                  QStringLiteral("LumenFold-2026-03-07-160509.") + QString::fromUtf8(row.extension))
            << row.type;
    }
}

TEST(DownloadTest, TheNameIsTheSameInEveryLanguage)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(downloadName(afternoon, QStringLiteral("image/png")), QStringLiteral("LumenFold-2026-03-07-160509.png"));
    QLocale::setDefault(before);
}

} // namespace
} // namespace lumenfold::test
