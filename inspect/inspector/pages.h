// SPDX-License-Identifier: MIT
#pragma once

#include "page.h"

class QPlainTextEdit;

namespace Zentu {
class ProxyAction;
}

namespace Zentu::Inspect {

/// The proxies: how they look, which backend is active, and why.
class ActionsPage : public TablePage
{
    Q_OBJECT

public:
    explicit ActionsPage(Session& session);

protected:
    std::vector<Row> rows() const override;
    QString details(const QString& id) const override;

private:
    ProxyAction* proxy(const QString& id) const;
    QString history(Address address) const;
    QString backends(const ProxyAction& proxy, Address address) const;
};

/// The types of events: who hears them, and what was posted.
class EventsPage : public TablePage
{
    Q_OBJECT

public:
    explicit EventsPage(Session& session);

    /// Whether callers are shown with their lines, which asks another program.
    void setShowsLines(bool shows);

protected:
    std::vector<Row> rows() const override;
    QString details(const QString& id) const override;

private:
    QString subscribers(const EventType& type) const;
    QString posts(const QString& type) const;

    bool m_showsLines = false;
};

/// The contexts that are in force, and what each change of them did.
class ContextsPage : public TablePage
{
    Q_OBJECT

public:
    explicit ContextsPage(Session& session);

protected:
    std::vector<Row> rows() const override;
    QString details(const QString& id) const override;
};

/// Whatever is registered, pooled, open, shown or watched, and was not let go.
class ObjectsPage : public TablePage
{
    Q_OBJECT

public:
    explicit ObjectsPage(Session& session);

    /// Selects the object at an address.
    void select(const QString& address) override;

protected:
    std::vector<Row> rows() const override;
    QString details(const QString& id) const override;

private:
    void addRegistries(std::vector<Row>& rows) const;
    void addPools(std::vector<Row>& rows) const;
    void addDocuments(std::vector<Row>& rows) const;
    void addDialogs(std::vector<Row>& rows) const;
    void addWatches(std::vector<Row>& rows) const;
    Row row(const QString& kind, const QString& name, Address address, const Moment& since) const;
};

} // namespace Zentu::Inspect
