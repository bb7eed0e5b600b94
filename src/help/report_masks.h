#pragma once

#include <QString>

namespace ktr {

/// A text of any origin without what is nobody else's business: PINs, PUKs, passwords, in commands, settings,
/// XML, addresses and connection strings; phone numbers; the user's name in paths. In the place of each
/// stands "****". It rather takes too much than too little.
QString withoutSecrets(const QString &text);

} // namespace ktr
