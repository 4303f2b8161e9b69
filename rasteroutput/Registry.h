// What the registries of painters and plugins have in common: a table of creators by name, with the failures that say
// which kind of thing could not be registered, removed or made.
#pragma once

#include "rasteroutput/Exception.h"
#include "rasteroutput/ProcessWide.h"

#include <boost/smart_ptr/shared_ptr.hpp>
#include <loki/Factory.h>

#include <string>

namespace RasterOutput
{
    /// The process-wide table for one kind of product.
    template <class Product>
    class Registry
    {
    public:
        using Creator = Product* (*)();

        /// `kindOfProduct` names the product in failures; a literal.
        constexpr explicit Registry(const char* kindOfProduct)
            : kind(kindOfProduct)
        {
        }

        void Register(const std::string& identifier, Creator creator) const
        {
            if (!Entries().Register(identifier, Loki::Functor<Product*, Loki::NullType>(creator)))
            {
                throw Exception(identifier + " " + kind + " identifier already registered");
            }
        }

        void Unregister(const std::string& identifier) const
        {
            if (!Entries().Unregister(identifier))
            {
                throw Exception(identifier + " " + kind + " failed to unregister");
            }
        }

        boost::shared_ptr<Product> Make(const std::string& identifier) const
        {
            return boost::shared_ptr<Product>(Create(identifier));
        }

    private:
        using Table = Loki::Factory<Product, std::string>;

        static Table& Entries() { return ProcessWide<Table>(); }

        // A creator may throw anything at all; all that its client learns is that there is no product.
        Product* Create(const std::string& identifier) const
        {
            try
            {
                return Entries().CreateObject(identifier);
            }
            catch (...)
            {
                throw Exception(std::string("Could not make ") + kind + " " + identifier);
            }
        }

        const char* kind;
    };
}
