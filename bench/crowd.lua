-- The crowd's rules in Lua, for the same comparison. The argument is the number of enemies; each line read runs one frame and
-- answers its milliseconds of processor time.
local count = tonumber(arg[1])
local floor, sqrt, sin, cos, exp, atan2, pi = math.floor, math.sqrt, math.sin, math.cos, math.exp, math.atan2, math.pi
local CELLS, SIZE = 100, 40

-- The same starting places as the other versions: a linear congruential generator that all of them share.
local seed = 7
local function unit()
  seed = (seed * 16807) % 2147483647
  return seed / 2147483647
end

local enemies = {}
for i = 1, count do
  local x = unit() * 4000
  local y = unit() * 4000
  enemies[i] = { x = x, y = y, hp = 100, knockback_x = 0, knockback_y = 0, bob_timer = 0, image_y_offset = 0, image_angle = 0 }
end

local grid = {}
local function fill()
  for i = 0, CELLS * CELLS - 1 do grid[i] = false end
  for i = 1, count do
    local e = enemies[i]
    local cx, cy = floor(e.x / SIZE), floor(e.y / SIZE)
    if cx >= 0 and cy >= 0 and cx < CELLS and cy < CELLS then
      local cell = grid[cy * CELLS + cx]
      if cell then cell[#cell + 1] = i else grid[cy * CELLS + cx] = { i } end
    end
  end
end

local function nearby(x, y)
  local found, n = {}, 0
  local cx, cy = floor(x / SIZE), floor(y / SIZE)
  for dy = -1, 1 do
    for dx = -1, 1 do
      local c, r = cx + dx, cy + dy
      if c >= 0 and r >= 0 and c < CELLS and r < CELLS then
        local cell = grid[r * CELLS + c]
        if cell then
          for k = 1, #cell do
            n = n + 1
            found[n] = cell[k]
          end
        end
      end
    end
  end
  return found, n
end

local function step(i, px, py, dt)
  local e = enemies[i]
  local dir = atan2(-(py - e.y), px - e.x) * 180 / pi
  if dir < 0 then dir = dir + 360 end
  local move_x, move_y = 100 * cos(dir * pi / 180), -100 * sin(dir * pi / 180)
  local push_x, push_y = 0, 0
  local near, n = nearby(e.x, e.y)
  for k = 1, n do
    local j = near[k]
    if j ~= i then
      local o = enemies[j]
      local dx, dy = e.x - o.x, e.y - o.y
      local d2 = dx * dx + dy * dy
      if d2 > 0 and d2 < 4096 then
        local dist = sqrt(d2)
        local force = (1 - dist / 64) * 1000
        push_x = push_x + dx / dist * force
        push_y = push_y + dy / dist * force
      end
    end
  end
  if e.knockback_x ~= 0 or e.knockback_y ~= 0 then
    local decay = exp(-5 * dt)
    e.knockback_x, e.knockback_y = e.knockback_x * decay, e.knockback_y * decay
    if sqrt(e.knockback_x ^ 2 + e.knockback_y ^ 2) < 1 then e.knockback_x, e.knockback_y = 0, 0 end
  end
  e.x = e.x + (move_x + push_x + e.knockback_x) * dt
  e.y = e.y + (move_y + push_y + e.knockback_y) * dt
  e.bob_timer = e.bob_timer + dt * 10
  e.image_y_offset = sin(e.bob_timer) * 4
  e.image_angle = dir
end

local function frame()
  fill()
  for i = 1, count do step(i, 2000, 2000, 1 / 60) end
end
for _ = 1, 20 do frame() end
for _ in io.lines() do
  local start = os.clock()
  frame()
  print((os.clock() - start) * 1000)
  io.flush()
end
