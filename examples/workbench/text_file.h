// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// A text file that is read and written byte for byte: knows the encoding of its characters and
/// whether they begin with a byte order mark. How its lines end is part of the text.
class TextFile
{
public:
    /// Reads a file. False and the reason if it cannot be read or is no text; nothing is changed
    /// then.
    bool read(const QString& path, QString* text, QString* error);
    /// Writes a file, all of it or nothing, where a link leads and with the permissions that are
    /// there. False and the reason if it cannot be written.
    bool write(const QString& path, const QString& text, QString* error);

    /// What the file held when it was last read or written.
    QByteArray bytes() const { return m_bytes; }
    /// Takes what another program has written for what the file holds.
    void setBytes(const QByteArray& bytes) { m_bytes = bytes; }
    /// The bytes that would be written.
    QByteArray encoded(const QString& text) const;

    /// The encoding's name, for people.
    QString encodingName() const;
    /// The first character that the encoding cannot hold; empty if it holds them all.
    QString firstUnwritable(const QString& text) const;
    /// Writes in UTF-8 from now on, which holds every character.
    void useUtf8();

private:
    enum class Encoding { Utf8, Utf16LittleEndian, Utf16BigEndian, Locale, Latin1 };

    bool decode(const QByteArray& bytes, QString* text);

    static QString charactersOf(const QByteArray& bytes, Encoding encoding);
    static QByteArray bytesOf(const QString& text, Encoding encoding);

    QByteArray m_bytes;
    QByteArray m_mark;
    Encoding m_encoding = Encoding::Utf8;
};

/// The bytes of a file; false and the reason if it breaks off or cannot be opened.
bool readBytes(const QString& path, QByteArray* bytes, QString* error);
