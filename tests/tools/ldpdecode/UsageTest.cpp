// The option table is what the parser of main.cpp reads: every name of every
// entry leads back to its entry, and every option the parser handles has one
// entry (the parser switches over OptionId, so an id without a case does not
// compile).
#include "Usage.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace LdpDecode;

namespace {

TEST(Usage, EveryNameOfTheTableFindsItsEntry) {
   std::set<OptionId> ids;
   std::size_t names = 0;
   for (OptionDoc const & o : usageOptions) {
      EXPECT_TRUE(ids.insert(o.id).second) << o.names << ": a second entry for one option";
      if (o.id == OptionId::input) {
         EXPECT_EQ(o.names[0], 'F') << "the input is named by no option";
         continue;
      }
      std::string_view rest = o.names;
      while (!rest.empty()) {
         std::size_t const comma = rest.find(", ");
         std::string_view name = rest.substr(0, comma);
         name = name.substr(0, name.find(' '));
         EXPECT_EQ(findOption(name), &o) << name;
         ++names;
         rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 2);
      }
   }
   EXPECT_EQ(ids.size(), static_cast<std::size_t>(OptionId::help) + 1) << "an option without an entry";
   EXPECT_EQ(names, 12u);  // -i -f -c --hex --summary --json --json-text --check --threads --man -h --help
}

TEST(Usage, ArgumentsThatNameNoOptionFindNone) {
   for (char const * arg : {"FILE", "-", "", "--", "-x", "--jso", "--json=1", "--json-tex", "IFACE", "-i IFACE", "--help,"}) {
      EXPECT_EQ(findOption(arg), nullptr) << arg;
   }
}

} // namespace
