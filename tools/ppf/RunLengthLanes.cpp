// A length byte says where the next one is, so that a walk waits for memory most of the time. Walks that begin at different
// bytes nearly always fall into step after a few tokens: a block is walked in lanes that begin apart, each somewhere in the
// data, and a lane counts from the token at which the walk through the lane before it falls into step. With one walk alone a
// whole conversion takes 1.10 (flat) or 1.14 (photo) times as long in ASCII85, 1.18 or 1.46 in binary.
#include "ppf/RunLengthLanes.h"

#include "ppf/Keywords.h"
#include "ppf/RunLengthToken.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Ppf
{
    namespace
    {
        constexpr std::size_t LaneCount = 8;
        /// Long enough that falling into step, some dozens of tokens in data that is mostly short ones, costs little. The
        /// longer a lane is the less its end costs, where the lanes take fewer and fewer steps together.
        constexpr std::size_t ShortestLane = 4096;
        constexpr std::size_t LongestLane = 61440;
        /// A length byte and the longest literal run.
        constexpr std::size_t LongestToken = 129;

        /// Three counts in one number, so that a step is one addition: in its low bits the place in the block, then how
        /// many bytes the tokens so far stand for, then the end marks met on the way.
        constexpr unsigned PlaceBits = 20;
        constexpr unsigned PassedBits = 26;
        constexpr unsigned EndMarkBits = 18;
        constexpr unsigned EndMarksShift = PlaceBits + PassedBits;
        static_assert(EndMarksShift + EndMarkBits == 64);
        constexpr std::size_t LargestPlace = LaneCount * LongestLane + LongestToken;
        static_assert(LargestPlace >> PlaceBits == 0 && LargestPlace / 2 >> EndMarkBits == 0, "a block can be counted");
        static_assert(LargestPlace / 2 * 128 >> PassedBits == 0, "a block of the longest repeat runs can be counted");

        constexpr std::uint64_t LowBits(std::uint64_t number, unsigned count)
        {
            return number & ((std::uint64_t{1} << count) - 1);
        }

        constexpr std::array<std::uint64_t, 256> MakeSteps()
        {
            std::array<std::uint64_t, 256> made{};
            for (std::size_t length = 0; length < made.size(); ++length)
            {
                const RunLengthToken token(static_cast<unsigned char>(length));
                const std::uint64_t endMarks = length == Filter::RunLengthEnd ? 1 : 0;
                made[length] = (1 + token.DataBytes()) | token.Run() << PlaceBits | endMarks << EndMarksShift;
            }
            return made;
        }

        /// What a step adds, by the length byte. An end mark is passed like a repeat run.
        constexpr std::array<std::uint64_t, 256> Steps = MakeSteps();

        /// A walk from some byte of a block on, which may or may not be in step with the tokens.
        class Walk
        {
        public:
            explicit Walk(std::size_t place = 0)
                : counts(place)
            {
            }

            void Step(const char* block) { counts += Steps[static_cast<unsigned char>(block[Place()])]; }

            std::size_t Place() const { return LowBits(counts, PlaceBits); }
            std::size_t Passed() const { return LowBits(counts >> PlaceBits, PassedBits); }
            bool HasMetEndMark() const { return counts >> EndMarksShift != 0; }

            /// Takes over what `other` has counted since it stood where this walk and `then` stand.
            void GoOnAs(const Walk& other, const Walk& then) { counts += other.counts - then.counts; }

        private:
            std::uint64_t counts;
        };

        using Lanes = std::array<Walk, LaneCount>;

        Lanes WalkLanes(const char* block, std::size_t laneSize)
        {
            const auto endOf = [laneSize](std::size_t lane) { return (lane + 1) * laneSize; };
            Lanes lanes;
            for (std::size_t i = 0; i < LaneCount; ++i)
            {
                lanes[i] = Walk(i * laneSize);
            }
            // As many steps together as bring none of them past its end.
            for (std::size_t together = laneSize / LongestToken; together != 0;)
            {
                for (std::size_t step = 0; step < together; ++step)
                {
                    for (Walk& lane : lanes)
                    {
                        lane.Step(block);
                    }
                }
                together = std::numeric_limits<std::size_t>::max();
                for (std::size_t i = 0; i < LaneCount; ++i)
                {
                    together = std::min(together, (endOf(i) - lanes[i].Place()) / LongestToken);
                }
            }
            for (std::size_t i = 0; i < LaneCount; ++i)
            {
                while (lanes[i].Place() < endOf(i))
                {
                    lanes[i].Step(block);
                }
            }
            return lanes;
        }

        /// Takes `walk`, which is in step with the data, through the lane that began at `laneBegin` and came to `lane`:
        /// token by token until they meet, and on with what the lane has counted since. False if they never meet; then
        /// `walk` stands about at the lane's end all the same.
        bool Join(Walk& walk, const char* block, std::size_t laneBegin, const Walk& lane)
        {
            Walk follower(laneBegin);
            while (walk.Place() != follower.Place() && follower.Place() < lane.Place())
            {
                (walk.Place() < follower.Place() ? walk : follower).Step(block);
            }
            if (walk.Place() != follower.Place())
            {
                return false;
            }
            walk.GoOnAs(lane, follower);
            return true;
        }
    }

    RunLengthPlace PassTokens(std::string_view bytes, std::size_t begin, std::uint64_t wanted)
    {
        RunLengthPlace place{begin, 0};
        for (;;)
        {
            // Data is longer than what it stands for by little, if at all.
            const std::uint64_t left =
                std::min<std::uint64_t>(bytes.size() - std::min(place.at, bytes.size()), wanted - place.passed);
            const auto laneSize = static_cast<std::size_t>(std::min<std::uint64_t>(LongestLane, left / LaneCount));
            if (laneSize < ShortestLane)
            {
                return place;
            }
            const RunLengthPlace blockBegin = place;
            const char* const block = bytes.data() + blockBegin.at;
            const Lanes lanes = WalkLanes(block, laneSize);
            Walk walk = lanes[0];
            bool inStep = true;
            for (std::size_t next = 1;; ++next)
            {
                if (walk.HasMetEndMark() || blockBegin.passed + walk.Passed() >= wanted)
                {
                    return place;
                }
                place = {blockBegin.at + walk.Place(), blockBegin.passed + walk.Passed()};
                if (!inStep || next == LaneCount)
                {
                    break;
                }
                inStep = Join(walk, block, next * laneSize, lanes[next]);
            }
        }
    }
}
