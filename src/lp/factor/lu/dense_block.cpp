#include "lp/factor/lu/dense_block.h"

#include <cstddef>

namespace kelvo {
namespace {

/// Two doubles of one instruction, at any address of an array of doubles.
using Pair [[gnu::vector_size(16), gnu::aligned(8), gnu::may_alias]] = double;

Pair load(const double* x) {
  return *reinterpret_cast<const Pair*>(x);
}
void store(double* x, Pair value) {
  *reinterpret_cast<Pair*>(x) = value;
}

/// result[c] = sum over i < n of columns[c * stride + i] * x[i], c < 4.
void dot_four(const double* x, const double* columns, long stride, int n, double* result) {
  const double *a = columns, *b = a + stride, *c = b + stride, *d = c + stride;
  Pair sa{}, sb{}, sc{}, sd{};
  int i = 0;
  for (; i + 2 <= n; i += 2) {
    const Pair xi = load(x + i);
    sa += load(a + i) * xi;
    sb += load(b + i) * xi;
    sc += load(c + i) * xi;
    sd += load(d + i) * xi;
  }
  result[0] = sa[0] + sa[1];
  result[1] = sb[0] + sb[1];
  result[2] = sc[0] + sc[1];
  result[3] = sd[0] + sd[1];
  if (i < n) {
    result[0] += a[i] * x[i];
    result[1] += b[i] * x[i];
    result[2] += c[i] * x[i];
    result[3] += d[i] * x[i];
  }
}

double dot(const double* a, const double* x, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += a[i] * x[i];
  return sum;
}

void subtract(double* x, const double* a, double factor, int n) {
  for (int i = 0; i < n; ++i) x[i] -= a[i] * factor;
}

}  // namespace

void subtract_four(double* x, const double* columns, long stride, const double* factor, int n) {
  const double *a = columns, *b = a + stride, *c = b + stride, *d = c + stride;
  const Pair fa = {factor[0], factor[0]}, fb = {factor[1], factor[1]};
  const Pair fc = {factor[2], factor[2]}, fd = {factor[3], factor[3]};
  int i = 0;
  for (; i + 2 <= n; i += 2) {
    store(x + i, load(x + i) - (load(a + i) * fa + load(b + i) * fb) -
                     (load(c + i) * fc + load(d + i) * fd));
  }
  if (i < n) {
    x[i] = x[i] - (a[i] * factor[0] + b[i] * factor[1]) - (c[i] * factor[2] + d[i] * factor[3]);
  }
}

void DenseBlock::solve_lower(double* x) const {
  int k = 0;
  for (; k + 4 <= order; k += 4) {
    for (int c = 0; c < 3; ++c) {
      for (int i = c + 1; i < 4; ++i) x[k + i] -= column(k + c)[k + i] * x[k + c];
    }
    subtract_four(x + k + 4, column(k) + k + 4, order, x + k, order - k - 4);
  }
  for (; k < order; ++k) subtract(x + k + 1, column(k) + k + 1, x[k], order - k - 1);
}

void DenseBlock::solve_lower_transposed(double* x) const {
  int k = order;
  for (; k >= 4; k -= 4) {
    double sum[4];
    dot_four(x + k, column(k - 4) + k, order, order - k, sum);
    for (int c = 3; c >= 0; --c) {
      const double* a = column(k - 4 + c) + k - 4;
      for (int i = c + 1; i < 4; ++i) sum[c] += a[i] * x[k - 4 + i];
      x[k - 4 + c] -= sum[c];
    }
  }
  for (; k > 0; --k) x[k - 1] -= dot(column(k - 1) + k, x + k, order - k);
}

void DenseBlock::solve_upper(double* x) const {
  int k = order;
  for (; k >= 4; k -= 4) {
    for (int c = 3; c > 0; --c) {
      for (int i = 0; i < c; ++i) x[k - 4 + i] -= column(k - 4 + c)[k - 4 + i] * x[k - 4 + c];
    }
    subtract_four(x, column(k - 4), order, x + k - 4, k - 4);
  }
  for (; k > 0; --k) subtract(x, column(k - 1), x[k - 1], k - 1);
}

void DenseBlock::solve_upper_transposed(double* x, const double* inverse, const int* place,
                                        int end) const {
  const auto finish = [&](int k, double sum) {
    if (place[k] < end) x[k] = x[k] * inverse[k] - sum;
  };
  int k = 0;
  for (; k + 4 <= order; k += 4) {
    double sum[4];
    dot_four(x, column(k), order, k, sum);
    for (int c = 0; c < 4; ++c) {
      const double* a = column(k + c) + k;
      for (int i = 0; i < c; ++i) sum[c] += a[i] * x[k + i];
      finish(k + c, sum[c]);
    }
  }
  for (; k < order; ++k) finish(k, dot(column(k), x, k));
}

void DenseBlock::clear_upper(int k) {
  for (int i = 0; i < k; ++i) column(k)[i] = 0.0;
  for (int j = k + 1; j < order; ++j) column(j)[k] = 0.0;
}

void DenseBlock::save_upper(int k, Vector<double>& saved) const {
  for (int i = 0; i < k; ++i) saved.push_back(column(k)[i]);
  for (int j = k; j < order; ++j) saved.push_back(column(j)[k]);
}

void DenseBlock::restore_upper(int k, const double* saved) {
  for (int i = 0; i < k; ++i) column(k)[i] = saved[i];
  for (int j = k + 1; j < order; ++j) column(j)[k] = saved[j];
}

}  // namespace kelvo
