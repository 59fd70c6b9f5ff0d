#include "platform/updates/Appcast.h"

#include <QXmlStreamReader>

#include <utility>

namespace lumenfold {
namespace {

constexpr QStringView ownNamespace = u"urn:lumenfold:appcast";
/// Beyond that nobody reads them.
constexpr qsizetype longestNotes = qsizetype{64} * 1024;
constexpr qsizetype longestLine = 200;
constexpr std::size_t mostItems = 500;

/// What may be opened or downloaded. Nobody listens on the way there.
bool isSecure(const QUrl &address)
{
    return address.isValid() && address.scheme() == QStringView(u"https") && !address.host().isEmpty();
}

QUrl addressIn(const QString &text)
{
    return QUrl(text.trimmed(), QUrl::StrictMode);
}

class AppcastReader {
public:
    explicit AppcastReader(const QByteArray &xml) : m_xml(xml) {}

    std::optional<std::vector<AppcastItem>> read()
    {
        if (!nextElement() || !isPlain(u"rss")) {
            return std::nullopt;
        }
        bool hasChannel = false;
        while (nextElement()) {
            if (isPlain(u"channel") && !hasChannel) {
                hasChannel = true;
                readChannel();
            } else {
                m_xml.skipCurrentElement();
            }
        }
        // What follows the root is looked at too, so that half a feed is none.
        while (!m_xml.atEnd()) {
            m_xml.readNext();
            refuseDocumentType();
        }
        if (m_xml.hasError() || !hasChannel) {
            return std::nullopt;
        }
        return std::move(m_items);
    }

private:
    /// Like the reader's own, but does not pass over a document type: entities that a document declares may grow
    /// without end or name files.
    bool nextElement()
    {
        while (!m_xml.atEnd()) {
            m_xml.readNext();
            refuseDocumentType();
            if (m_xml.isStartElement()) {
                return true;
            }
            if (m_xml.isEndElement()) {
                return false;
            }
        }
        return false;
    }

    void refuseDocumentType()
    {
        if (m_xml.isDTD()) {
            m_xml.raiseError(QStringLiteral("A feed has no document type"));
        }
    }

    [[nodiscard]] bool isPlain(QStringView name) const
    {
        return m_xml.name() == name && m_xml.namespaceUri().isEmpty();
    }

    [[nodiscard]] bool isOwn(QStringView name) const
    {
        return m_xml.name() == name && m_xml.namespaceUri() == ownNamespace;
    }

    QString readText() { return m_xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }

    void readChannel()
    {
        while (nextElement()) {
            if (isPlain(u"item") && m_items.size() < mostItems) {
                readItem();
            } else {
                m_xml.skipCurrentElement();
            }
        }
    }

    void readItem()
    {
        AppcastItem item;
        while (nextElement()) {
            if (isPlain(u"title")) {
                item.title = readText().left(longestLine).simplified();
            } else if (isPlain(u"link")) {
                item.page = addressIn(readText());
            } else if (isPlain(u"description")) {
                item.notes = readText().left(longestNotes);
            } else if (isOwn(u"minimumSystemVersion")) {
                item.minimumSystemVersion = readText();
            } else if (isPlain(u"enclosure")) {
                readEnclosure(item);
                m_xml.skipCurrentElement();
            } else {
                m_xml.skipCurrentElement();
            }
        }
        if (!isSecure(item.page)) {
            item.page = item.file;
        }
        if (!item.version.isEmpty() && item.version.size() <= longestLine && isSecure(item.file)) {
            m_items.push_back(std::move(item));
        }
    }

    void readEnclosure(AppcastItem &item) const
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        item.file = addressIn(attributes.value(QStringLiteral("url")).toString());
        item.version = attributes.value(ownNamespace.toString(), QStringLiteral("version")).trimmed().toString();
        bool isNumber = false;
        const qint64 length = attributes.value(QStringLiteral("length")).toLongLong(&isNumber);
        if (isNumber && length >= 0) {
            item.length = length;
        }
    }

    QXmlStreamReader m_xml;
    std::vector<AppcastItem> m_items;
};

} // namespace

std::optional<std::vector<AppcastItem>> readAppcast(const QByteArray &xml)
{
    if (xml.size() > maximumAppcastBytes) {
        return std::nullopt;
    }
    return AppcastReader(xml).read();
}

} // namespace lumenfold
