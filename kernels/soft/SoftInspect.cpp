// SoftInspect.cpp - what the kernel shows, read out for a host (see
// SoftKernel::Inspect).
#include "SoftKernelParts.h"

#include <algorithm>

void SoftKernel::Inspect(std::vector<InspectedPlane>* planes)
{
    planes->clear();
    std::vector<const Plane*> order;
    for (const auto& entry : mPlanes)
        if (entry.second->added)
            order.push_back(entry.second.get());
    // Ties of priority go to the older plane first, items likewise: the
    // drawing order.
    std::sort(order.begin(), order.end(), [](const Plane* a, const Plane* b) {
        return a->priority != b->priority ? a->priority < b->priority : a->serial < b->serial;
    });
    for (const Plane* plane : order) {
        InspectedPlane view{plane->id, plane->type, plane->priority, plane->rect, plane->hidden, {}};
        std::vector<std::pair<std::uint64_t, Item*>> items;
        for (auto& entry : mItems)
            if (entry.second->onScreen && entry.second->planeId == plane->id)
                items.emplace_back(entry.second->serial, entry.second.get());
        std::sort(items.begin(), items.end(), [this](const auto& a, const auto& b) {
            const int pa = EffectivePriority(*a.second), pb = EffectivePriority(*b.second);
            return pa != pb ? pa < pb : a.first < b.first;
        });
        for (const auto& entry : items) {
            Item& item = *entry.second;
            InspectedItem seen{item.id, item.source, EffectivePriority(item), false, ZOR_Rect(0, 0, 0, 0)};
            // The fault of a cel that cannot be drawn is already the kernel's
            // first fault or comes after it: asking again adds nothing.
            const std::string fault = mFault;
            seen.hasRect = ItemRect(item, &seen.rect);
            mFault = fault;
            if (seen.hasRect) {
                seen.rect.left += plane->rect.left;
                seen.rect.right += plane->rect.left;
                seen.rect.top += plane->rect.top;
                seen.rect.bottom += plane->rect.top;
            }
            view.items.push_back(seen);
        }
        planes->push_back(std::move(view));
    }
}
