#include "job/EscapedName.h"

namespace Jobs
{
    namespace
    {
        /// Whether every closing parenthesis has an opening one before it, and the other way round.
        bool ParenthesesBalance(const std::string& name)
        {
            std::string::size_type open = 0;
            for (const char c : name)
            {
                if (c == ')' && open == 0)
                {
                    return false;
                }
                if (c == '(')
                {
                    ++open;
                }
                else if (c == ')')
                {
                    --open;
                }
            }
            return open == 0;
        }
    }

    std::string EscapedName(const std::string& name)
    {
        const bool escapeParentheses = !ParenthesesBalance(name);
        std::string escaped;
        escaped.reserve(name.size());
        for (const char c : name)
        {
            if (c == '\\' || (escapeParentheses && (c == '(' || c == ')')))
            {
                escaped += '\\';
            }
            escaped += c;
        }
        return escaped;
    }
}
