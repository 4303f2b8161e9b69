// Which previews are read beside each other, in which order they come, and who reads what could not be read.
#include "frontend/ReadAhead.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace SheetvaneTest
{
    namespace
    {
        using Sheetvane::Preview;
        using Sheetvane::ReadAhead;

        std::unique_ptr<Preview> PreviewOf(std::size_t position)
        {
            auto preview = std::make_unique<Preview>();
            preview->lineLength = static_cast<std::uint32_t>(position);
            return preview;
        }
    }

    TEST(ReadAhead, PreviewsComeInOrderAndNoMoreThanTheThreadsAreHeld)
    {
        constexpr std::size_t Count = 40;
        for (const unsigned int threads : {2u, 3u, 64u})
        {
            std::atomic<std::size_t> takes = 0;
            ReadAhead previews(
                Count, threads,
                [&](std::size_t position, const std::atomic<bool>&)
                {
                    EXPECT_LT(position, takes + threads);
                    std::this_thread::sleep_for(std::chrono::microseconds(position % 3 == 0 ? 500 : 0));
                    return PreviewOf(position);
                });
            for (std::size_t position = 0; position < Count; ++position)
            {
                ++takes;
                const std::unique_ptr<Preview> preview = previews.Take();
                ASSERT_NE(preview, nullptr) << position;
                EXPECT_EQ(preview->lineLength, position) << threads;
            }
        }
    }

    TEST(ReadAhead, WhatCouldNotBeReadIsLeftToWhoeverTakesIt)
    {
        ReadAhead previews(
            3, 2,
            [](std::size_t position, const std::atomic<bool>&) -> std::unique_ptr<Preview>
            {
                if (position == 0)
                {
                    throw std::runtime_error("damaged");
                }
                return position == 1 ? nullptr : PreviewOf(position);
            });
        EXPECT_EQ(previews.Take(), nullptr);
        EXPECT_EQ(previews.Take(), nullptr);
        EXPECT_NE(previews.Take(), nullptr);
    }

    TEST(ReadAhead, EndReachesReadersAtWork)
    {
        std::atomic<int> begun = 0;
        std::atomic<int> ended = 0;
        {
            const ReadAhead previews(
                9, 2,
                [&](std::size_t position, const std::atomic<bool>& isEnding)
                {
                    ++begun;
                    while (!isEnding)
                    {
                        std::this_thread::yield();
                    }
                    ++ended;
                    return PreviewOf(position);
                });
            while (begun < 2)
            {
                std::this_thread::yield();
            }
        }
        EXPECT_EQ(ended, 2);
    }

    TEST(ReadAhead, WithOneThreadOrOnePreviewNothingIsReadAhead)
    {
        const auto never = [](std::size_t, const std::atomic<bool>&) -> std::unique_ptr<Preview>
        {
            ADD_FAILURE() << "read ahead";
            return nullptr;
        };
        EXPECT_EQ(ReadAhead(9, 1, never).Take(), nullptr);
        EXPECT_EQ(ReadAhead(1, 9, never).Take(), nullptr);
    }
}
