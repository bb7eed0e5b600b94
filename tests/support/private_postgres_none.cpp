#include "support/private_postgres.h"

namespace ktr::test {

// A server that a test starts by itself is one of Unix.

PrivatePostgres::~PrivatePostgres() = default;

bool PrivatePostgres::canBe()
{
    return false;
}

QString PrivatePostgres::start()
{
    return QStringLiteral("there is none");
}

QString PrivatePostgres::startAgain()
{
    return start();
}

void PrivatePostgres::kill() {}

void PrivatePostgres::hang() {}

void PrivatePostgres::goOn() {}

void PrivatePostgres::endConnections() {}

QString PrivatePostgres::makeDatabase(const QString &)
{
    return {};
}

QString PrivatePostgres::addressOf(const QString &) const
{
    return {};
}

QString PrivatePostgres::sql(const QString &, const QString &) const
{
    return {};
}

} // namespace ktr::test
