// SPDX-License-Identifier: MIT
#include "document_factory.h"

#include "object_pool.h"

#include <vector>

static std::vector<DocumentKind::Create>& kinds()
{
    static std::vector<DocumentKind::Create> all;
    return all;
}

DocumentKind::DocumentKind(const Create& create)
{
    kinds().push_back(create);
}

void DocumentKind::publishAll(QObject* parent)
{
    for (const Create& create : kinds())
        Zentu::ObjectPool::instance()->addObject(create(parent));
}
