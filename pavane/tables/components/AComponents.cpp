#include "pavane/tables/components/AComponents.h"

#include "pavane/containers/item_io.h"
#include "pavane/tables/components/component_text.h"
#include "pavane/tables/components/component_visibility.h"
#include "pavane/tables/components/visibility_batch.h"

#include <algorithm>
#include <cmath>
#include <istream>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::int64_t recordBytes = 60;

/// Deliberate: the last column is headed after a spectral index though it holds the ring's width;
/// programs that read these files look for exactly these lines.
constexpr std::string_view columnComments = ";Column 1 - Type\n"
                                            ";Column 2 - Peak_Flux\n"
                                            ";Column 3 - Large_Axis\n"
                                            ";Column 4 - Axis_Ratio\n"
                                            ";Column 5 - Inclination\n"
                                            ";Column 6 - Position_Angle\n"
                                            ";Column 7 - Distance\n"
                                            ";Column 8 - Spectral_Index\n";

/// The greatest size of n numbers, NaN when one of them is.
double greatestSize(const double* numbers, int n)
{
    double greatest = 0;
    for (int i = 0; i < n; ++i) {
        if (std::isnan(numbers[i]))
            return std::numeric_limits<double>::quiet_NaN();
        greatest = std::max(greatest, std::abs(numbers[i]));
    }
    return greatest;
}

}  // namespace

AComponents::~AComponents() = default;

std::istream& AComponents::Load(std::istream& in)
{
    Free();
    ComponentLines lines(in);
    int wanted = 0;
    if (!lines.next())
        return in;
    std::string_view countText = lines.text();
    if (!takeNumber(countText, wanted))
        return in;
    while (count() < wanted && lines.next()) {
        ACompItem item;
        std::string_view fields = lines.text();
        (void)takeComponent(fields, item);  // the fields not reached keep their defaults
        if (Add(item) < 0)
            return in;
    }
    return in;
}

std::ostream& AComponents::Store(std::ostream& out) const
{
    std::string text(columnComments);
    text += std::to_string(count()) + '\n';
    char line[ACompItem::lineSize];
    for (int i = 0; i < count(); ++i) {
        const int length = (*this)(i).Store(line);
        text.append(line, static_cast<std::size_t>(length)) += '\n';
    }
    return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

int AComponents::Load(AFile& file)
{
    Free();
    std::int32_t wanted = 0;
    if (!loadItem(file, wanted) || wanted * recordBytes > file.left())
        return 0;
    for (std::int32_t i = 0; i < wanted; ++i) {
        ACompItem item;
        if (!item.Load(file) || Add(item) < 0) {
            Free();
            return 0;
        }
    }
    return 1;
}

int AComponents::Store(AFile& file) const
{
    if (!storeItem(file, std::int32_t{count()}))
        return 0;
    for (int i = 0; i < count(); ++i)
        if (!(*this)(i).Store(file))
            return 0;
    return 1;
}

std::complex<double> AComponents::VfromUV(double u, double v) const
{
    std::complex<double> sum;
    for (int i = 0; i < count(); ++i)
        sum += (*this)(i).VfromUV(u, v);
    return sum;
}

void AComponents::VfromUV(const double* u, const double* v, int n, std::complex<double>* out) const
{
    if (n < 1)
        return;
    const auto points = static_cast<std::size_t>(n);
    const std::unique_ptr<double[]> sums(new (std::nothrow) double[2 * points]());
    if (!sums) {
        for (int i = 0; i < n; ++i)
            out[i] = VfromUV(u[i], v[i]);
        return;
    }
    double* const real = sums.get();
    double* const imaginary = real + points;
    const double greatestU = greatestSize(u, n);
    const double greatestV = greatestSize(v, n);
    for (int k = 0; k < count(); ++k) {
        const ComponentTerms terms((*this)(k));
        if (addVisibilities(terms, u, v, n, greatestU, greatestV, real, imaginary))
            continue;
        for (int i = 0; i < n; ++i) {
            const std::complex<double> value = visibility(terms, u[i], v[i]);
            real[i] += value.real();
            imaginary[i] += value.imag();
        }
    }
    for (int i = 0; i < n; ++i)
        out[i] = {real[i], imaginary[i]};
}

void AComponents::ToMap(AMatrix<float>& map, const TMinMax& range) const
{
    for (int i = 0; i < count(); ++i)
        (*this)(i).ToMap(map, range);
}

}  // namespace pavane
