// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class Document;

/// Opens files as one kind of document. Factories are published in the object pool.
class DocumentFactory : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The kind of document, which is also the context of its actions.
    virtual QString kind() const = 0;
    /// How well the kind suits a file; 0 if it does not take it.
    virtual int rank(const QString& path) const = 0;
    /// The document, or null and the reason.
    virtual Document* open(const QString& path, QString* error) const = 0;
    /// The kind's actions apply to this document from now on, or to none. Its context comes and
    /// goes with that.
    virtual void setCurrent(Document* document) = 0;
};

/// Makes a kind of document known, from a static object in its source file.
class DocumentKind
{
public:
    using Create = std::function<DocumentFactory*(QObject* parent)>;

    explicit DocumentKind(const Create& create);

    /// Creates the factories of all kinds and publishes them.
    static void publishAll(QObject* parent);
};
