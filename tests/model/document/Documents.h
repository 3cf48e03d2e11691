#pragma once

#include "model/AppShortcut.h"

#include <map>
#include <string>

namespace hollowfernpike::test {

/// The members of a record as JSON texts, by key.
using Members = std::map<std::string, std::string>;

/// Those of a valid record.
const Members& validMembers();

std::string record(const Members& members);

/// The valid record with one member as given, or without it.
std::string recordWith(const std::string& key, const std::string& value);
std::string recordWithout(const std::string& key);

/// The document whose list has these elements.
std::string list(const std::string& elements);

/// What the only element of a list is read as.
AppShortcut decodeOne(const std::string& element);

/// The English description of the refusal, or "accepted".
std::string refusal(const std::string& document);

/// What the refusal of an element behind a valid one says about it.
std::string refusalOfSecond(const std::string& element);

} // namespace hollowfernpike::test
