#pragma once

// Articles of the sample list of 2012, for a sample dealer who needs no list to be set up.

#include <span>
#include <string_view>

namespace pxtarvo::devhost {

struct ListArticle {
    std::string_view code;
    std::string_view description;
    double price;  ///< list price
};

/// Every third row of the list, each code once, in the list's order.
std::span<const ListArticle> listArticles();

}  // namespace pxtarvo::devhost
