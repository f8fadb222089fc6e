#pragma once

namespace orvane {

class ClientContext;

/// What "orvane" alone does until the workspace view takes its place: starts the host if none runs, registers the
/// current folder as the first project, and says what runs and how to go on.
namespace Overview {

int show(ClientContext& client);

}  // namespace Overview

}  // namespace orvane
