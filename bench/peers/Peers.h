/// The other libraries, each in units of its own; those that were not found when the program was
/// configured are left out.
#pragma once

#include "peers/Contest.h"

namespace Vr::bench::peers {

void AddMeshoptimizer(Contest& contest);
void AddVtk(Contest& contest);
void AddOpen3d(Contest& contest);
void AddOpenMesh(Contest& contest);
void AddCgal(Contest& contest);
void AddAssimp(Contest& contest);
void AddLibigl(Contest& contest);
void AddLibiglThreads(Contest& contest);

/// Adds all that were found.
inline void AddPeers([[maybe_unused]] Contest& contest) {
#if defined(VERIDANE_PEER_MESHOPTIMIZER)
    AddMeshoptimizer(contest);
#endif
#if defined(VERIDANE_PEER_VTK)
    AddVtk(contest);
#endif
#if defined(VERIDANE_PEER_OPEN3D)
    AddOpen3d(contest);
#endif
#if defined(VERIDANE_PEER_OPENMESH)
    AddOpenMesh(contest);
#endif
#if defined(VERIDANE_PEER_CGAL)
    AddCgal(contest);
#endif
#if defined(VERIDANE_PEER_ASSIMP)
    AddAssimp(contest);
#endif
#if defined(VERIDANE_PEER_LIBIGL)
    AddLibigl(contest);
    AddLibiglThreads(contest);
#endif
}

/// Makes a contestant of another library.
inline Contestant Peer(std::string operation, std::string peer, std::string call, std::string note,
                       std::function<Task(const Input&)> make) {
    Contestant contestant;
    contestant.operation = std::move(operation);
    contestant.peer = std::move(peer);
    contestant.call = std::move(call);
    contestant.note = std::move(note);
    contestant.make = std::move(make);
    return contestant;
}

}  // namespace Vr::bench::peers
