// Marker labelling: binarise, then one plain 8u fill a component in raster order,
// the labels running from minLabel to maxLabel and round again.
#include "../distance/vncvfloodfill.h"

namespace {

inline vnxStatus ownCheckLabelArgs(int minLabel, int maxLabel, int norm) {
  if (minLabel < 1 || maxLabel >= 255 || minLabel > maxLabel) return vnxStatusBadArg;
  if (norm != 0 && norm != 1) return vnxStatusBadArg;
  return vnxStatusOk;
}

// Labels are below 255 and the unlabelled pixels are 255, so a repainted pixel is
// never taken for an unlabelled one. The fill's map starts clear once and each fill
// leaves it clear again.
template <ownFillConn K>
int ownLabelComponents(vnx8u* image, int step, vnxiSize roi, int minLabel, int maxLabel, vnx8u* buffer) {
  ownFillColours<vnx8u, 1> c{};
  c.seed[0] = c.lo[0] = c.hi[0] = 255;
  c.fill[0] = static_cast<vnx8u>(minLabel);  // below 255: painted pixels fail
  ownFloodFiller<vnx8u, 1, ownFillRule::Plain, K> filler(image, step, roi, buffer, c);
  filler.clearMap();
  int label = minLabel, count = 0;
  for (int y = 0; y < roi.height; ++y) {
    const vnx8u* row = ownRow(image, step, y);
    for (int x = ownFindByte8u(row, 0, roi.width, 255); x < roi.width; x = ownFindByte8u(row, x + 1, roi.width, 255)) {
      filler.setFill(0, static_cast<vnx8u>(label));
      filler.run({x, y});
      label = label + 1 > maxLabel ? minLabel : label + 1;
      ++count;
    }
  }
  return count;
}

}  // namespace

VNX_API vnxStatus vnxiLabelMarkersGetBufferSize_8u_C1R(vnxiSize roiSize, int* pBufSize) noexcept {
  return vnxiFloodFillGetSize(roiSize, pBufSize);
}

VNX_API vnxStatus vnxiLabelMarkers_8u_C1IR(vnx8u* pMarker, int markerStep, vnxiSize roiSize, int minLabel, int maxLabel,
                                           int norm, int* pNumber, vnx8u* pBuffer) noexcept {
  if (vnxStatus st = ownCheck({pMarker, pBuffer, pNumber}, roiSize, {ownImg<vnx8u>(markerStep, roiSize.width)}))
    return st;
  if (vnxStatus st = ownCheckLabelArgs(minLabel, maxLabel, norm)) return st;
  for (int y = 0; y < roiSize.height; ++y) {
    vnx8u* row = ownRow(pMarker, markerStep, y);
    for (int x = 0; x < roiSize.width; ++x) row[x] = row[x] ? 255 : 0;
  }
  *pNumber = norm == 1
                 ? ownLabelComponents<ownFillConn::Four>(pMarker, markerStep, roiSize, minLabel, maxLabel, pBuffer)
                 : ownLabelComponents<ownFillConn::Eight>(pMarker, markerStep, roiSize, minLabel, maxLabel, pBuffer);
  return vnxStatusOk;
}
