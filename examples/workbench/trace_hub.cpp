// SPDX-License-Identifier: MIT
#include "trace_hub.h"

#include "wisp_recorder.h"

#include <cstdio>

TraceHub* TraceHub::s_instance = nullptr;

TraceHub::TraceHub(QObject* parent)
    : QObject(parent)
{
    s_instance = this;
    wisp::setSink(&TraceHub::receive, this);
}

TraceHub::~TraceHub()
{
    wisp::setSink(nullptr);
    s_instance = nullptr;
}

TraceHub* TraceHub::instance()
{
    return s_instance;
}

void TraceHub::writeTo(const QString& path)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        std::fprintf(stderr, "zentu-workbench: cannot write the trace to %s: %s\n",
            qUtf8Printable(path), qUtf8Printable(m_file.errorString()));
    }
}

// Calls come one at a time, so the file needs no lock of its own.
void TraceHub::receive(int /*level*/, const char* text, void* hub)
{
    auto* self = static_cast<TraceHub*>(hub);
    const QString line = QString::fromLatin1(text);
    if (self->m_file.isOpen()) {
        self->m_file.write(line.trimmed().toUtf8() + '\n');
        self->m_file.flush();
    }
    Q_EMIT self->traced(line.trimmed());
}
