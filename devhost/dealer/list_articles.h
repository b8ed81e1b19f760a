#pragma once

// Articles of the sample list of 2012, for a sample dealer who needs no list to be set up.

#include <string>
#include <vector>

namespace pxtarvo::devhost {

struct ListArticle {
    std::string code;
    std::string description;
    double price = 0;  ///< list price
};

/// Every third row of the list, each code once, in the list's order, 640 in all. Raises the provider's error,
/// which names the list, where its file is not where the program was built.
std::vector<ListArticle> listArticles();

}  // namespace pxtarvo::devhost
