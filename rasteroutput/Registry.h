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
    /// Brings the allocator of Loki's functors into being, unless it is. What is made first dies last, so that a table
    /// which calls this before it is made finds the allocator when it dies with functors in it.
    void MakeFunctorAllocator();

    /// The process-wide table for one kind of product. Once the process has destroyed it, it counts as empty.
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
            Table* const table = ProcessWide<Table>();
            const Loki::Functor<Product*, Loki::NullType> functor(creator);
            if (table == nullptr || !table->Register(identifier, functor))
            {
                throw Exception(identifier + " " + kind + " identifier already registered");
            }
        }

        void Unregister(const std::string& identifier) const
        {
            Table* const table = ProcessWide<Table>();
            if (table == nullptr || !table->Unregister(identifier))
            {
                throw Exception(identifier + " " + kind + " failed to unregister");
            }
        }

        boost::shared_ptr<Product> Make(const std::string& identifier) const
        {
            return boost::shared_ptr<Product>(Create(identifier));
        }

    private:
        struct AllocatorFirst
        {
            AllocatorFirst() { MakeFunctorAllocator(); }
        };

        struct Table : AllocatorFirst, Loki::Factory<Product, std::string>
        {
        };

        // A creator may throw anything at all; all that its client learns is that there is no product.
        Product* Create(const std::string& identifier) const
        {
            try
            {
                Table* const table = ProcessWide<Table>();
                return table != nullptr ? table->CreateObject(identifier) : Table::OnUnknownType(identifier);
            }
            catch (...)
            {
                throw Exception(std::string("Could not make ") + kind + " " + identifier);
            }
        }

        const char* kind;
    };
}
