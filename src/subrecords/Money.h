#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace pvardo::subrecords {

// Money is counted in whole cents everywhere it is added or taken away. The
// store keeps an amount in its money column as the number of dollars rounded
// to the cent, which reads back to the same cents; no sum is ever made in
// binary fractions, so a thousand charges of $0.10 come to $100.00 exactly.
using Cents = long long;

// The amount a typed text begins with, as the office's screens read it: an
// optional sign, digits and one decimal point; anything after that, and a
// text that does not begin with a number, is ignored (0). Fractions of a cent
// are rounded half away from zero.
Cents leadingCents(const QString& text);

// An amount as a clerk types money: blanks around it, an optional sign, an
// optional "$" (either side of the sign), digits plain or grouped in threes
// by commas, and cents after one point ("$1,250.00", "-$5", "40", ".5").
// Fractions of a cent are rounded half away from zero. An empty text is 0.
// Anything else ("forty", "40 dollars", "1,00", "12.5.1") is no amount:
// nullopt, for the screen to refuse rather than keep as 0.
std::optional<Cents> typedCents(const QString& text);

// The cents of a value read from a money column; a null or a text that holds
// no number is 0.
Cents centsOf(const QVariant& stored);

// The value written to a money column.
double storedAmount(Cents cents);

// The amount as plain text, as the balance input shows it: "70", "12.5",
// "-0.1", "0".
QString plainAmount(Cents cents);

// "$##,###,###.#0", blanks in front up to `width`.
QString moneyText(Cents cents, int width = 0);

// "#######.#0": at least one digit before the point, always two after it.
QString maskedAmount(Cents cents);

} // namespace pvardo::subrecords
