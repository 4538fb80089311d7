// Palette.h - the demo's palette, shared by the asset maker and the game.
//
// Indices 0..15 are the classic sixteen colours; from 16 on come fifteen
// ramps of sixteen shades each, from dark (0) to light (15). The asset maker
// writes the palette (palette.txt); the game names colours with Shade when it
// draws something itself (an outline, a speech balloon).
#ifndef DEMO_PALETTE_H
#define DEMO_PALETTE_H

enum Ramp { kSky, kStone, kWood, kGrass, kSkin, kRed, kGold, kBlue, kPurple, kGrey, kTeal, kDusk, kSea, kLeaf, kPink };

// The palette index of a ramp's shade (the shade is kept to 0..15).
inline int Shade(Ramp ramp, int shade)
{
    return 16 + ramp * 16 + (shade < 0 ? 0 : shade > 15 ? 15 : shade);
}

#endif
