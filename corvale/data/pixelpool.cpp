#include "corvale/data/pixelpool.h"

#include <boost/intrusive/list.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace ZR::Corvale {

namespace {

constexpr std::size_t SmallestBlock = std::size_t{64} << 10; // the C library keeps lesser ones
constexpr std::size_t KeptBytes = std::size_t{256} << 20;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool pooling = false; // so that the sanitizer sees the end of each block
#else
constexpr bool pooling = true;
#endif

// A block that nobody uses; this lies at its beginning.
struct FreeBlock : boost::intrusive::list_base_hook<>
{
    explicit FreeBlock(std::size_t size) : size(size) {}

    const std::size_t size;
};

// These blocks, in the order in which they came back.
class FreeBlocks
{
public:
    /// One of that size exactly, since pictures are of few sizes; null if none of the last ones that came
    /// back, which are the likeliest to be in the caches, has it.
    void* take(std::size_t size)
    {
        const boost::lock_guard<boost::mutex> lock(_mutex);
        int looks = 32; // no more, for who cuts pictures to ever other sizes
        for (auto block = _blocks.rbegin(); block != _blocks.rend() && looks > 0; ++block, --looks)
            if (block->size == size)
                return remove(*block);
        return nullptr;
    }

    /// Frees those that wait longest when there are too many.
    void giveBack(void* data, std::size_t size)
    {
        const boost::lock_guard<boost::mutex> lock(_mutex);
        _blocks.push_back(*new (data) FreeBlock(size));
        _bytes += size;
        while (_bytes > KeptBytes)
            cv::fastFree(remove(_blocks.front()));
    }

private:
    void* remove(FreeBlock& block)
    {
        _bytes -= block.size;
        _blocks.erase(_blocks.iterator_to(block));
        return &block;
    }

    boost::mutex _mutex;
    boost::intrusive::list<FreeBlock> _blocks; // guarded by _mutex
    std::size_t _bytes = 0;                    // guarded by _mutex; of all blocks
};

// Places matrices in such blocks.
class PixelPool : public cv::MatAllocator
{
public:
    cv::UMatData* allocate(int dims, const int* sizes, int type, void*, std::size_t* step, cv::AccessFlag,
                           cv::UMatUsageFlags) const override
    {
        std::size_t size = static_cast<std::size_t>(CV_ELEM_SIZE(type));
        for (int i = dims - 1; i >= 0; --i) {
            if (step)
                step[i] = size;
            size *= static_cast<std::size_t>(sizes[i]);
        }
        auto matrix = std::make_unique<cv::UMatData>(this); // first, so that a failure keeps no block
        void* data = _free.take(size);
        if (!data)
            data = cv::fastMalloc(size);
        matrix->data = matrix->origdata = static_cast<uchar*>(data);
        matrix->size = size;
        return matrix.release();
    }
    bool allocate(cv::UMatData* matrix, cv::AccessFlag, cv::UMatUsageFlags) const override
    {
        return matrix != nullptr;
    }
    void deallocate(cv::UMatData* matrix) const override
    {
        _free.giveBack(matrix->origdata, matrix->size);
        delete matrix;
    }

private:
    mutable FreeBlocks _free;
};

} // namespace

cv::Mat newMatrix(const cv::Size& size, int type)
{
    cv::Mat matrix;
    if constexpr (pooling) {
        // It lasts until the process ends: a matrix may be released after all objects of this library.
        static PixelPool& pool = *new PixelPool;
        const std::size_t pixels =
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
        if (pixels * static_cast<std::size_t>(CV_ELEM_SIZE(type)) >= SmallestBlock)
            matrix.allocator = &pool;
    }
    matrix.create(size, type);
    matrix.allocator = nullptr; // what the host makes of this matrix later is its own
    return matrix;
}

} // namespace ZR::Corvale
