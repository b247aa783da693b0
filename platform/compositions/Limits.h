#pragma once

#include <QtGlobal>

/// What one composition may cost. A composition is a stranger's file: whatever it asks for, it gets
/// at most this much, and what lies beyond is left out.
namespace tarnwell::compositions::limits {

/// Macros within macros.
inline constexpr int nesting = 64;
/// Nodes of one composition, the copies of its virtual patches counted.
inline constexpr int nodes = 100'000;
/// Ports of all nodes, and whatever else of their descriptions has to be gone through.
inline constexpr qint64 descriptions = 4'000'000;
/// Passes of all iterators and copies of all replicators, in one frame.
inline constexpr int iterations = 10'000;
/// Runs of single patches, in one frame.
inline constexpr int evaluations = 1'000'000;
/// Things drawn in one frame.
inline constexpr int drawCommands = 100'000;
/// Vertices of all things drawn in one frame.
inline constexpr int vertices = 4'000'000;
/// Separate states that stateful patches keep for the passes of their iterators.
inline constexpr int passStates = 100'000;
/// Pulls within pulls, which only macros that run their children on demand can cause.
inline constexpr int pullDepth = 200;

/// Pixels along one side of an image.
inline constexpr int imageSide = 8'192;
/// Bytes of all images alive at one time.
inline constexpr qint64 imageBytes = 256LL * 1024 * 1024;

/// Time that all scripts together may take in one frame.
inline constexpr int scriptMilliseconds = 50;
/// Members of structures that a run of a script puts out; long texts count as many.
inline constexpr qint64 scriptMembers = 100'000;
/// Characters of one script.
inline constexpr int scriptLength = 1'000'000;

/// Characters of one image kernel.
inline constexpr int kernelLength = 65'536;
/// Kernels that are compiled at one time, those of the standard filters included.
inline constexpr int kernels = 128;
/// Patterns without end that are computed from each other.
inline constexpr int patternDepth = 8;
/// Turns of loops that the kernels of all pixels of one image may take together.
inline constexpr qint64 kernelSteps = 64'000'000;

/// Characters of one string.
inline constexpr int stringLength = 1'000'000;
/// Members of one structure, those of its members included. Long texts count as many.
inline constexpr qint64 structureMembers = 1'000'000;
/// Structures within structures.
inline constexpr int structureDepth = 32;
/// Ports of one node that a number in the file asks for.
inline constexpr int countedPorts = 1'000;

/// Characters of one expression, and how deep its parentheses may nest.
inline constexpr int expressionLength = 65'536;
inline constexpr int expressionDepth = 200;

} // namespace tarnwell::compositions::limits
