// mxSoak: a long random session of mouse events and engine frames against gizmos in all three
// modes, checking every frame (see mxSoakSession.h) and the memory.
//
//   mxSoak [--events N] [--seed S]
//
// N events (default 1,000,000), each one public mouse call or one engine frame, from the seed S
// (default 1297); the same seed replays the same session. The peak resident set and the heap
// in use are read at 10% and at 100% of the run; the peak may grow by at most 1 MiB between
// the two. Exit status: 0 when every check passes, 1 at the first failed check, 2 for bad
// arguments.

#include "mxSoakSession.h"

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#if defined(__SANITIZE_ADDRESS__)
#define MX_SOAK_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MX_SOAK_ADDRESS_SANITIZER 1
#endif
#endif

namespace {

using mx::soak::mxSoakSession;

constexpr std::uint64_t csDefaultEvents = 1000000u;
constexpr std::uint32_t csDefaultSeed = 1297u;
constexpr std::uint64_t csAllowedGrowthBytes = 1048576u;

void printUsage(std::FILE* out) {
    std::fprintf(out, "usage: mxSoak [--events N] [--seed S]\n"
                      "  --events N  events to play, N >= 1 (default 1000000); an event is one\n"
                      "              public mouse call or one engine frame\n"
                      "  --seed S    seed of the random session, 0 to 4294967295 (default 1297)\n");
}

// A whole decimal number within [low, high]; false for anything else.
bool parseNumber(const char* text, std::uint64_t low, std::uint64_t high, std::uint64_t& value) {
    if (!text || *text < '0' || *text > '9') {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    const unsigned long long parsed = std::strtoull(text, &end, 10);
    if (errno != 0 || *end != '\0' || parsed < low || parsed > high) {
        return false;
    }
    value = parsed;
    return true;
}

// The value of option name at argv[i] ("--name V" or "--name=V"); advances i past it.
const char* optionValue(const char* name, int argc, char** argv, int& i) {
    const std::size_t length = std::strlen(name);
    if (std::strncmp(argv[i], name, length) != 0) {
        return nullptr;
    }
    if (argv[i][length] == '=') {
        return argv[i] + length + 1;
    }
    if (argv[i][length] == '\0' && i + 1 < argc) {
        return argv[++i];
    }
    return nullptr;
}

void printReport(const mxSoakSession::Report& r) {
    const std::uint64_t mouseCalls = r.presses + r.moves + r.releases;
    std::printf("events played      %" PRIu64 " = %" PRIu64 " mouse calls + %" PRIu64
                " engine frames\n",
                r.events, mouseCalls, r.frames);
    std::printf("mouse calls        %" PRIu64 " presses (%" PRIu64 " on a gizmo, %" PRIu64
                " before the last one's release, %" PRIu64
                " in the frame of the release before them), %" PRIu64 " moves, %" PRIu64
                " releases (%" PRIu64 " without a press)\n",
                r.presses, r.pressesOnGizmo, r.secondPresses, r.pressesAfterRelease, r.moves,
                r.releases, r.strayReleases);
    std::printf("drags started      translate %" PRIu64 ", rotate %" PRIu64 ", scale %" PRIu64
                "; rotate presses without a Start %" PRIu64 "; abandoned by a second press %" PRIu64
                "\n",
                r.dragsStarted[0], r.dragsStarted[1], r.dragsStarted[2],
                r.rotatePressesWithoutStart, r.dragsAbandoned);
    std::printf("picked handles     %" PRIu64 " translate and scale presses checked against the "
                "nearest axis (%" PRIu64 " of them exact ties); the gizmo checked for %" PRIu64
                " presses and %" PRIu64 " releases without a press\n",
                r.picksChecked, r.pickTiesChecked, r.pressGizmosChecked, r.strayGizmosChecked);
    std::printf("drags that moved   translate %" PRIu64 ", rotate %" PRIu64 ", scale %" PRIu64
                " (End not the identity)\n",
                r.dragsMoving[0], r.dragsMoving[1], r.dragsMoving[2]);
    std::printf("releases checked   %" PRIu64
                " drag releases; releases without a press heard %" PRIu64 " Ends, %" PRIu64
                " of which moved objects",
                r.releasesChecked, r.strayEnds, r.strayEndsMovingObjects);
    if (r.firstStrayEndMovingObjects > 0) {
        std::printf(" (first at event %" PRIu64 ")", r.firstStrayEndMovingObjects);
    }
    std::printf("\n");
    std::printf("scene changes      modes %" PRIu64 ", orientation %" PRIu64 ", camera %" PRIu64
                " (projection %" PRIu64 "), gizmo attachment %" PRIu64
                ", controller resets %" PRIu64 ", runaway objects put back %" PRIu64 "\n",
                r.modeChanges, r.orientationChanges, r.cameraChanges, r.projectionChanges,
                r.attachChanges, r.controllerResets, r.objectResets);
    std::printf("largest error      world vs End * (world at press) %.3g; world vs parent world * "
                "local %.3g (relative, tolerance 1e-05)\n",
                r.largestEndError, r.largestLocalError);
    const long long growth = static_cast<long long>(r.atEnd.peakResidentBytes) -
                             static_cast<long long>(r.atTenPercent.peakResidentBytes);
    std::printf("peak resident set  at 10%%: %" PRIu64 " bytes, at 100%%: %" PRIu64
                " bytes, growth %lld bytes (limit %" PRIu64 ")\n",
                r.atTenPercent.peakResidentBytes, r.atEnd.peakResidentBytes, growth,
                csAllowedGrowthBytes);
#ifdef MX_SOAK_ADDRESS_SANITIZER
    // The sanitizer's allocator does not fill in mallinfo2.
    std::printf("heap in use        not known under AddressSanitizer\n");
#else
    std::printf("heap in use        at 10%%: %" PRIu64 " bytes, at 100%%: %" PRIu64 " bytes\n",
                r.atTenPercent.heapInUseBytes, r.atEnd.heapInUseBytes);
#endif
    std::printf("wall time          %.1f s (%.2f us per event)\n", r.seconds,
                r.events > 0 ? r.seconds * 1e6 / static_cast<double>(r.events) : 0.0);
}

} // namespace

int main(int argc, char** argv) {
    std::uint64_t events = csDefaultEvents;
    std::uint64_t seed = csDefaultSeed;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            printUsage(stdout);
            return 0;
        }
        if (std::strncmp(argv[i], "--events", 8) == 0) {
            if (!parseNumber(optionValue("--events", argc, argv, i), 1u,
                             std::numeric_limits<std::uint64_t>::max(), events)) {
                std::fprintf(stderr, "mxSoak: --events needs a whole number of at least 1\n");
                printUsage(stderr);
                return 2;
            }
            continue;
        }
        if (std::strncmp(argv[i], "--seed", 6) == 0) {
            if (!parseNumber(optionValue("--seed", argc, argv, i), 0u,
                             std::numeric_limits<std::uint32_t>::max(), seed)) {
                std::fprintf(stderr, "mxSoak: --seed needs a whole number from 0 to 4294967295\n");
                printUsage(stderr);
                return 2;
            }
            continue;
        }
        std::fprintf(stderr, "mxSoak: unknown argument '%s'\n", argv[i]);
        printUsage(stderr);
        return 2;
    }

    std::printf("mxSoak: seed %" PRIu64 ", %" PRIu64
                " events (an event is one public mouse call or one engine frame)\n",
                seed, events);
    std::printf("replay with: mxSoak --events %" PRIu64 " --seed %" PRIu64 "\n", events, seed);
    std::fflush(stdout);

    mxSoakSession session(events, static_cast<std::uint32_t>(seed));
    const bool passed = session.run();
    printReport(session.report());

    if (!passed) {
        std::printf("result             FAILED at %s\n", session.failure().c_str());
        return 1;
    }
    const mxSoakSession::Report& report = session.report();
#ifdef MX_SOAK_ADDRESS_SANITIZER
    // AddressSanitizer holds freed blocks in its quarantine, so the resident set grows by
    // design; its leak checker watches the memory instead.
    std::printf("memory growth      not checked under AddressSanitizer\n");
    (void)report;
#else
    if (report.atEnd.peakResidentBytes >
        report.atTenPercent.peakResidentBytes + csAllowedGrowthBytes) {
        std::printf("result             FAILED: the peak resident set grew by more than %" PRIu64
                    " bytes between 10%% and 100%% of the run\n",
                    csAllowedGrowthBytes);
        return 1;
    }
#endif
    std::printf("result             PASS\n");
    return 0;
}
