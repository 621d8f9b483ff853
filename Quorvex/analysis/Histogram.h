#pragma once

#include <memory>
#include <vector>

#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

// Counts in a row of bins, with what turns them into thresholds: a median filter, a search for peaks, and the two peaks
// that part a volume into background and material. HistogramOf (VolumeHistogram.h) makes one of a volume.
//
// A copy shares the bins of its source: what is written through one shows in the other, until setSize gives either bins
// of its own. The last one frees them. Size, filter size and the list of peaks are each histogram's own.
//
// Any thread may use an object that it, and the copies that share its bins, have to themselves.
class QUORVEX_API Histogram {
public:
    Histogram(); // 256 bins
    explicit Histogram(int size);
    Histogram(const Histogram&) = default;
    Histogram& operator=(const Histogram&) = default;
    ~Histogram() = default;

    // New bins, all 0; none for a size below 1. Throws std::bad_alloc.
    void setSize(int n);
    int getSize() const { return m_size; }

    // Sets every bin to 0.
    void reset();

    // Unchecked.
    int& operator[](int i) const { return m_bins[i]; }

    // Width of the window of filterMedian(), 3 at first.
    int getFilterSize() const { return m_filterSize; }
    void setFilterSize(int width) { m_filterSize = width; }

    // The first bin above 0; 0 when there is none.
    int getLowestIndex() const;

    // The last bin above 0, the first one not looked at: when no other is above 0 it is the size less 1.
    int getHighestIndex() const;

    // The smallest of -1 and all bins, the largest of 0 and all bins.
    int getMin() const;
    int getMax() const;

    // Replaces each bin, or each of n values, by the median of those at most (width - 1) / 2 away from it; an even
    // width counts as the next odd one. Near the ends there are fewer of them; of an even number the upper middle one
    // is taken.
    void filterMedian();
    void filterMedian(int* values, int n, int width) const;

    // Where there are peaks, from left to right: values, or runs of equal values, whose neighbours are not larger; of a
    // run the middle, the upper one of two. A run of two or more at the right end is none, nor is a row of equal
    // values.
    std::vector<int> findMaxima(const int* values, int n) const;

    // Finds the peaks of the bins, keeps them, and gives their number.
    int getNumMaxima();

    // The i-th of the peaks kept; -1 when there is none.
    int getMaximum(int i) const;

    // The peaks of background and material, -1 where there is none: a copy of the bins is filtered wider and wider
    // until at most two peaks remain. From 513 bins on the answer is 100 and 400, whatever they hold.
    void binarize(int* low, int* high) const;

private:
    std::shared_ptr<int[]> m_bins;
    int m_size = 0;
    int m_filterSize = 3;
    std::vector<int> m_maxima;
};

} // namespace KOVA::Quorvex
