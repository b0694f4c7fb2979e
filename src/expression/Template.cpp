#include "expression/Template.h"

namespace halvane::expression {

Template::Template(std::string_view sText) {
    std::string sPiece;
    for (std::size_t nPosition = 0; nPosition < sText.size();) {
        const char c = sText[nPosition++];
        if (c != '{' || sText.substr(nPosition).starts_with('{')) {
            sPiece += c;
            nPosition += c == '{' ? 1 : 0;
            continue;
        }
        pieces_.push_back({std::move(sPiece), Expression(sText, nPosition)});
        sPiece.clear();
    }
    if (!sPiece.empty())
        pieces_.push_back({std::move(sPiece)});
}

} // namespace halvane::expression
