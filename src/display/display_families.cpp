// display_families.cpp: the table of display gauges and their pages; the
// _NB and _BR twins share their base gauge's page.
#include "display/display_families.h"

#include "display/c17_mfd.h"
#include "display/debug_page.h"
#include "display/eadi_a320.h"
#include "display/eadi_efs50.h"
#include "display/efs50_tcas.h"
#include "display/eicas_proline.h"
#include "display/nd_b737.h"
#include "display/nd_du1000.h"
#include "display/nd_efs50.h"
#include "display/nd_md11.h"
#include "display/nd_md80.h"
#include "display/nd_proline4.h"
#include "display/nd_p1000.h"
#include "display/pfd_b777.h"

namespace {
struct FamilyRow {
    GaugeId gauge;
    DisplayPage page;
};

constexpr FamilyRow kFamilies[] = {
    {GaugeId::HW_B737_ND, &DrawB737Nd},
    {GaugeId::HW_B737_ND_BR, &DrawB737Nd},
    {GaugeId::HW_B737_ND_NB, &DrawB737Nd},
    {GaugeId::HW_MD11_ND, &DrawMd11Nd},
    {GaugeId::HW_MD11_ND_NB, &DrawMd11Nd},
    {GaugeId::MD80_EHSI_NB, &DrawMd80Ehsi},
    {GaugeId::DU_1000_EHSI, &DrawDu1000Ehsi},
    {GaugeId::DU_1000_EHSI_NB, &DrawDu1000Ehsi},
    {GaugeId::PROLINE4_MFD, &DrawProline4Mfd},
    {GaugeId::PROLINE4_MFD_NB, &DrawProline4Mfd},
    {GaugeId::P1000_MFD, &DrawP1000Mfd},
    {GaugeId::P1000_MFD_NB, &DrawP1000Mfd},
    {GaugeId::PROLINE_EICAS, &DrawProlineEicas},
    {GaugeId::B777_PFD_NB, &DrawB777Pfd},
    {GaugeId::C17_MFD, &DrawC17Mfd},
    {GaugeId::A320_EADI_NB, &DrawA320Eadi},
    {GaugeId::EFS50_EADI, &DrawEfs50Eadi},
    {GaugeId::EFS50_EADI_NB, &DrawEfs50Eadi},
    {GaugeId::DEBUG, &DrawDebugPage},
    {GaugeId::EFS50_TCAS, &DrawEfs50Tcas},
    {GaugeId::EFS50_EHSI, &DrawEfs50Ehsi},
    {GaugeId::EFS50_EHSI_NB, &DrawEfs50Ehsi},
};
}  // namespace

DisplayPage DisplayPageOf(GaugeId id) {
    for (const FamilyRow& row : kFamilies)
        if (row.gauge == id) return row.page;
    return nullptr;
}
