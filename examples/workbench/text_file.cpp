// SPDX-License-Identifier: MIT
#include "text_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <langinfo.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

bool readBytes(const QString& path, QByteArray* bytes, QString* error)
{
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    if (isOpen)
        *bytes = file.readAll();
    // A file that breaks off is not an empty or a shorter one.
    if (isOpen && file.error() == QFileDevice::NoError)
        return true;
    *error = file.errorString();
    return false;
}

bool TextFile::read(const QString& path, QString* text, QString* error)
{
    QByteArray bytes;
    if (!readBytes(path, &bytes, error))
        return false;
    if (!decode(bytes, text)) {
        *error = QCoreApplication::translate("TextFile", "not a text in UTF-8");
        return false;
    }
    m_bytes = bytes;
    return true;
}

static QString fromUtf16(const QByteArray& bytes, bool bigEndian)
{
    QString text(bytes.size() / 2, Qt::Uninitialized);
    auto* const to = reinterpret_cast<ushort*>(text.data());
    if (bigEndian)
        qFromBigEndian<ushort>(bytes.constData(), text.size(), to);
    else
        qFromLittleEndian<ushort>(bytes.constData(), text.size(), to);
    return text;
}

static QByteArray toUtf16(const QString& text, bool bigEndian)
{
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    if (bigEndian)
        qToBigEndian<ushort>(text.utf16(), text.size(), bytes.data());
    else
        qToLittleEndian<ushort>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

// With the size, as Qt 5 would end a text at its first zero.
QString TextFile::charactersOf(const QByteArray& bytes, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Utf8:
        return QString::fromUtf8(bytes.constData(), bytes.size());
    case Encoding::Utf16LittleEndian:
    case Encoding::Utf16BigEndian:
        return fromUtf16(bytes, encoding == Encoding::Utf16BigEndian);
    case Encoding::Locale:
        return QString::fromLocal8Bit(bytes.constData(), bytes.size());
    case Encoding::Latin1:
        break;
    }
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

QByteArray TextFile::bytesOf(const QString& text, Encoding encoding)
{
    switch (encoding) {
    case Encoding::Utf8:
        return text.toUtf8();
    case Encoding::Utf16LittleEndian:
    case Encoding::Utf16BigEndian:
        return toUtf16(text, encoding == Encoding::Utf16BigEndian);
    case Encoding::Locale:
        return text.toLocal8Bit();
    case Encoding::Latin1:
        break;
    }
    return text.toLatin1();
}

// Any bytes are characters in Latin-1, but a text has no control characters other than these.
static bool isBinary(const QByteArray& bytes)
{
    return std::any_of(bytes.cbegin(), bytes.cend(), [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x20 && !(code >= '\b' && code <= '\r') && code != 0x1b;
    });
}

// An encoding is the file's if it gives back the very same bytes.
bool TextFile::decode(const QByteArray& bytes, QString* text)
{
    static const QByteArray Utf8Mark = QByteArrayLiteral("\xef\xbb\xbf");
    const auto tryEncoding = [&](Encoding encoding, const QByteArray& mark = QByteArray()) {
        const QByteArray rest = bytes.mid(mark.size());
        *text = charactersOf(rest, encoding);
        if (bytesOf(*text, encoding) != rest)
            return false;
        m_mark = mark;
        m_encoding = encoding;
        return true;
    };
    if (bytes.startsWith("\xff\xfe"))
        return tryEncoding(Encoding::Utf16LittleEndian, bytes.left(2));
    if (bytes.startsWith("\xfe\xff"))
        return tryEncoding(Encoding::Utf16BigEndian, bytes.left(2));
    if (tryEncoding(Encoding::Utf8, bytes.startsWith(Utf8Mark) ? Utf8Mark : QByteArray()))
        return true;
    return !isBinary(bytes) && (tryEncoding(Encoding::Locale) || tryEncoding(Encoding::Latin1));
}

QByteArray TextFile::encoded(const QString& text) const
{
    return m_mark + bytesOf(text, m_encoding);
}

QString TextFile::encodingName() const
{
    switch (m_encoding) {
    case Encoding::Utf8:
        return m_mark.isEmpty() ? QStringLiteral("UTF-8") : QStringLiteral("UTF-8 BOM");
    case Encoding::Utf16LittleEndian:
        return QStringLiteral("UTF-16 LE");
    case Encoding::Utf16BigEndian:
        return QStringLiteral("UTF-16 BE");
    case Encoding::Locale:
        return QString::fromLatin1(nl_langinfo(CODESET));
    case Encoding::Latin1:
        break;
    }
    return QStringLiteral("ISO-8859-1");
}

QString TextFile::firstUnwritable(const QString& text) const
{
    const auto holds = [this](const QString& part) {
        return charactersOf(bytesOf(part, m_encoding), m_encoding) == part;
    };
    if (holds(text))
        return QString();
    for (decltype(text.size()) i = 0; i < text.size(); ++i) {
        QString character = text.mid(i, text.at(i).isHighSurrogate() ? 2 : 1);
        if (!holds(character))
            return character;
        i += character.size() - 1;
    }
    return QString();
}

void TextFile::useUtf8()
{
    m_encoding = Encoding::Utf8;
    m_mark.clear();
}

// The new file gets the permissions from QSaveFile, but neither owner nor access list. Where we may
// not give them, it stays ours.
static void keepOwner(const QString& path, int descriptor)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat old = {};
    if (stat(name.constData(), &old) != 0)
        return;
    if (fchown(descriptor, old.st_uid, old.st_gid) == 0)
        fchmod(descriptor, old.st_mode & 07777); // which a new owner takes away in part
    static const char* const AccessList = "system.posix_acl_access";
    std::vector<char> list(XATTR_SIZE_MAX);
    const ssize_t size = getxattr(name.constData(), AccessList, list.data(), XATTR_SIZE_MAX);
    if (size > 0)
        fsetxattr(descriptor, AccessList, list.data(), static_cast<size_t>(size), 0);
}

bool TextFile::write(const QString& path, const QString& text, QString* error)
{
    const QByteArray bytes = encoded(text);
    const QString canonical = QFileInfo(path).canonicalFilePath();
    QSaveFile file(canonical.isEmpty() ? path : canonical);
    const bool isOpen = file.open(QIODevice::WriteOnly);
    if (isOpen)
        keepOwner(file.fileName(), file.handle());
    if (!isOpen || file.write(bytes) != bytes.size() || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    m_bytes = bytes;
    return true;
}
