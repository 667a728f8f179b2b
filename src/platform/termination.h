#pragma once

namespace sorvanta {

/// From now on the application quits when the system or a terminal asks it to end (SIGTERM, SIGINT, SIGHUP), as it does
/// when its window is closed: what is open is closed and kept. The same request again ends it at once; another one does
/// not, as a session that ends may send two. One that is ignored, as under nohup, stays ignored. Main thread, once,
/// with an application object.
void quitOnTermination();

} // namespace sorvanta
