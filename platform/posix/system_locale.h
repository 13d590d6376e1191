#pragma once

#include <locale>
#include <memory>

#include "platform/collation.h"
#include "platform/short_date.h"

namespace quorvane {

/// What stands for the system locale here: the one that the environment names (LC_ALL, LC_CTYPE,
/// LC_COLLATE, LC_TIME, LANG). Where it names none, or one that is not installed, it is C.UTF-8, so
/// that letters of every script have their case. Read once, at the first call.
[[nodiscard]] const std::locale& systemLocale();

/// Texts are equal when their lower-case forms, character by character, are equal by the locale's
/// std::collate. A surrogate pair counts as its character. Unlike Windows, C libraries pass over no
/// character here, tell ss from the sharp s, and a letter with an accent of its own from the same
/// letter with a combining one.
[[nodiscard]] std::unique_ptr<Collation> MakeCollation(const std::locale& locale);

/// The date form "%x" of the locale. The plain C locale has no other than month/day/year with two
/// digits each.
[[nodiscard]] Text ShortDateIn(const std::locale& locale, const CalendarDay& day);

}  // namespace quorvane
