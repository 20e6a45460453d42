// Tables of texts, and what holds of every text that is refused.
#pragma once

#include <gtest/gtest.h>

#include "tests/Rows.h"
#include "tests/kinds/TextProperties.h"

namespace Routing::Bgp {

/// Checks rows of an error and texts that have it: a piece of what the error says, and in each text
/// the token at fault between two `^`.
void expectRefused(const char* table, auto parse) {
  for (const Cells& row : rowsOf(table))
    for (std::size_t i = 1; i < row.size(); ++i) {
      std::string text = row[i];
      const std::size_t at = text.find('^');
      const std::string token = text.substr(at + 1, text.rfind('^') - at - 1);
      std::erase(text, '^');
      const auto parsed = parse(text);
      const CommunityTextError& error = parsed.error;
      EXPECT_FALSE(parsed) << row[i];
      EXPECT_EQ(std::pair(error.position, error.token), std::pair(at, token)) << row[i];
      EXPECT_TRUE(isPlaced(error, text)) << row[i];
      EXPECT_NE(error.text().find(row[0]), std::string::npos) << row[i] << ": " << error.text();
      const bool suggests = row[0].find("did you mean") != std::string::npos;
      EXPECT_EQ(error.nearest.empty(), !suggests) << row[i] << ": " << error.nearest;
    }
}

}  // namespace Routing::Bgp

using namespace Routing::Bgp;
