// example_game.cpp - a small game that draws through the kernel interface
// alone: a picture, a bouncing ball, a marker that goes where you click, a
// caption drawn with the kernel's font, a blip at each click. Escape or the
// quit key ends it.
//
// It shows what a game library gives the player (quindle_game.h) and runs on
// any machine without the rest of the library.
#include "quindle_game.h"

#include "SoftExtras.h"
#include "kernel.h"


namespace {

struct Example {
    KernelServices* k = nullptr;
    SoftKernelExtras* extras = nullptr;
    KernelPlaneRecord* back = nullptr;   // the picture
    KernelPlaneRecord* front = nullptr;  // a transparent plane for the actors
    KernelScreenItemRecord* ball = nullptr;
    KernelScreenItemRecord* marker = nullptr;
    KernelScreenItemRecord* caption = nullptr;
    std::uint16_t captionBitmap = 0;
    std::int32_t frame = 0;
    std::int32_t polygon = -1;
    int dx = 4;
};

KernelPlaneRecord* Plane(KernelServices* k, int type, int color, ZOR_Rect rect, int priority, int picture)
{
    ZOR_Point vanish(0, 0);
    KernelPlaneRecord* p = k->NewPlane(type, color, &rect, 0, priority, &vanish, picture, 0);
    k->AddPlane(p);
    k->PlaneCreated(p);
    return p;
}

KernelScreenItemRecord* Item(KernelServices* k, KernelPlaneRecord* plane, KernelScreenItemSource src, int x, int y,
                             int priority)
{
    KernelScreenItemRecord* r = k->NewScreenItem(plane->id, &src, ZOR_Point(x, y), kFullSizeScale);
    r->priority = priority;
    r->fixedPriority = 1;
    k->AddScreenItem(r);
    k->UpdateScreenItem(r);
    return r;
}

int Step(void* state)
{
    Example& g = *static_cast<Example*>(state);
    KernelServices* k = g.k;

    // The ball rolls to and fro, cycling its four cels.
    g.ball->pos.x += g.dx;
    if (g.ball->pos.x < 40 || g.ball->pos.x > 600)
        g.dx = -g.dx;
    const int cels = k->NumCels(100, 0); // 0 when the view is missing: the player reports it
    if (cels > 0)
        g.ball->source.cel = (++g.frame / 4) % cels;
    k->UpdateScreenItem(g.ball);

    k->UpdateScreen(1);

    KernelEventRecord e{};
    k->GetEvent(kEventMaskAll, &e);
    if (e.type == kEventPointerDown) { // a press: the marker goes there, with a blip
        ZOR_Point at = e.where;
        k->PlaneToLocal(g.front->id, &at);
        g.marker->pos = at;
        k->UpdateScreenItem(g.marker);
        if (k->ResourceExists(kResourceAudio, 1))
            k->PlaySample(1, 0, 100, 0, 0);
    } else if (e.type == kEventKeyDown && (e.message == kKeyEscape || (e.message == kQuitKey && e.modifiers == kQuitModifiers))) {
        return 0;
    }
    return 1;
}

void Finish(void* state)
{
    Example* g = static_cast<Example*>(state);
    KernelServices* k = g->k;
    k->DeletePolygon(g->front->id, g->polygon);
    k->DeleteScreenItem(g->ball);
    k->DeleteScreenItem(g->marker);
    k->DeleteScreenItem(g->caption);
    g->extras->FreeMemBitmap(g->captionBitmap);
    k->DeletePlane(g->front->id);
    k->DeletePlane(g->back->id);
    delete g;
}

void* Start(const QuindleHost* host)
{
    Example* g = new Example;
    g->k = host->kernel;
    g->extras = host->extras;
    KernelServices* k = g->k;

    g->back = Plane(k, kPlanePicture, 0, ZOR_Rect(0, 0, 639, 479), 0, 1);
    g->front = Plane(k, kPlaneTransparent, 0, ZOR_Rect(0, 0, 639, 479), 1, 0);
    g->ball = Item(k, g->front, KernelScreenItemSource{0, 100, 0, 0, 0, {0, 0}}, 320, 400, 10);
    g->marker = Item(k, g->front, KernelScreenItemSource{0, 101, 0, 0, 0, {0, 0}}, 320, 240, 20);

    // The caption: white text on a transparent bitmap.
    g->captionBitmap = g->extras->CreateMemBitmap(400, 40, 0, 0);
    g->extras->DrawText(g->captionBitmap, 0, 4, "Hello from quindle", 15, 24, 0);
    g->caption = Item(k, g->front, KernelScreenItemSource{2, 0, 0, 0, g->captionBitmap, {0, 0}}, 200, 20, 30);

    // A dashed frame around the field the ball rolls on.
    ZOR_Point field[] = {{20, 360}, {619, 360}, {619, 440}, {20, 440}};
    g->polygon = k->AddPolygon(g->front->id, field, 4, 5, 14, ZOR_Line::tDashed, 0, 2, 1);

    k->SetCursorView(101, 0, 0);
    return g;
}

} // namespace

QUINDLE_GAME_ENTRY("example", &Start, &Step, &Finish)
