-- Small operations in Lua: prints "name nanoseconds" a line.
local N = 3000000
local clock = os.clock
local function measure(name, n, run)
  local best = 1e9
  for _ = 1, 3 do
    local start = clock()
    run(n)
    best = math.min(best, (clock() - start) / n * 1e9)
  end
  print(name, best)
end
local object = { alpha = 1, beta = 2, hp = 3, gamma = 4 }
function object.method(self, a) return a end
global_value = 5
local function three(a, b, c) return a end
local sink = 0
measure("variable_read", N, function(n) local s = 0 for i = 1, n do s = s + object.hp end sink = sink + s end)
measure("variable_write", N, function(n) for i = 1, n do object.hp = i end end)
measure("variable_add", N, function(n) for i = 1, n do object.hp = object.hp + 1 end end)
measure("global_read", N, function(n) local s = 0 for i = 1, n do s = s + global_value end sink = sink + s end)
measure("script_call_3", N, function(n) local s = 0 for i = 1, n do s = s + three(i, 2, 3) end sink = sink + s end)
measure("method_call", N, function(n) local s = 0 for i = 1, n do s = s + object.method(object, i) end sink = sink + s end)
local array = {}
for i = 1, 64 do array[i] = i end
measure("array_read", N, function(n) local s = 0 for i = 1, n do s = s + array[i % 64 + 1] end sink = sink + s end)
measure("array_write", N, function(n) for i = 1, n do array[i % 64 + 1] = i end end)
measure("array_push", N, function(n) local list = {} for i = 1, n do if i % 1000 == 0 then list = {} end list[#list + 1] = i end end)
measure("struct_of_4", N / 4, function(n) local s for i = 1, n do s = { alpha = i, beta = 2, gamma = 3, hp = 4 } end sink = s.hp end)
measure("string_concat", N / 4, function(n) local s = "abc" for i = 1, n do local t = s .. tostring(i % 10) end end)
measure("number_to_string", N / 4, function(n) local t for i = 1, n do t = tostring(i % 1000 + 0.5) end end)
local names = { "alpha", "beta", "gamma", "hp" }
measure("variable_by_name", N, function(n) local s = 0 for i = 1, n do s = s + object[names[i % 4 + 1]] end sink = sink + s end)
