#pragma once

namespace orvane::StandardDescriptors {

/// Opens those of the three standard descriptors that the program was started without. Otherwise the next socket or
/// file would get the number, and what is printed would go into it. Their reads and writes fail, as before. To be
/// called before anything is opened.
void reserve();

}  // namespace orvane::StandardDescriptors
