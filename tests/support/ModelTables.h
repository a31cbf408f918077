// Model tests as data: an entity's or value's attributes checked against a table
// of attribute name -> expected text (the texts of zon/Reflect.h), and the
// notifications an entity gives recorded as "attribute" or "attribute[key]".
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zon/Reflect.h"

namespace LdpTest {

using AttrTable = std::vector<std::pair<std::string_view, std::string_view>>;
using Records = std::vector<std::string>;

enum class Coverage {
   every, // the table lists every attribute: one added to the schema fails the test until it is listed
   some,  // the table lists some attributes
};

// Checks the listed attributes of `x` against their expected texts; with
// Coverage::every, also that nothing else exists. Failures name the attribute and
// show what it holds.
template <typename T>
void expectAttrs(T const & x, AttrTable const & table, Coverage coverage = Coverage::every) {
   std::vector<Zon::AttrText> const actual = Zon::attrTexts(x);
   for (auto const & [name, expected] : table) {
      auto it = std::find_if(actual.begin(), actual.end(), [&](Zon::AttrText const & a) { return a.info.name == name; });
      if (it == actual.end()) {
         ADD_FAILURE() << "no attribute " << name;
         continue;
      }
      EXPECT_EQ(it->text, expected) << "attribute " << name << " (" << it->info.kind << " " << it->info.type << ")";
   }
   if (coverage == Coverage::every) {
      for (Zon::AttrText const & a : actual) {
         bool const listed = std::any_of(table.begin(), table.end(), [&](auto const & row) { return row.first == a.info.name; });
         EXPECT_TRUE(listed) << "attribute " << a.info.name << " is not in the table; it holds " << a.text;
      }
   }
}

// Checks every attribute of `x`, in the order the entity lists them, against
// the table: a missing, extra or misplaced attribute fails and the whole list is
// shown as "attribute = text".
template <typename T>
void expectAttrsInOrder(T const & x, AttrTable const & table) {
   std::vector<std::string> expected;
   std::vector<std::string> actual;
   for (auto const & [name, text] : table) {
      expected.push_back(std::string(name) + " = " + std::string(text));
   }
   for (Zon::AttrText const & a : Zon::attrTexts(x)) {
      actual.push_back(std::string(a.info.name) + " = " + a.text);
   }
   EXPECT_EQ(actual, expected);
}

} // namespace LdpTest
