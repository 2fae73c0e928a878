-- Lets the local service steer the rooms and accounts of its own Prosody over loopback HTTP.
-- Loaded into the rooms' component. Every request is a POST of one JSON object with the field
-- "operation"; every answer is a JSON object.

local array = require "util.array";
local datetime = require "util.datetime";
local json = require "util.json";
local jid = require "util.jid";
local st = require "util.stanza";
local xml = require "util.xml";
local usermanager = require "core.usermanager";
local portmanager = require "core.portmanager";
local now = require "util.time".now;

local token = module:get_option_string("support_control_token");
local ready_file = module:get_option_string("support_control_ready_file");
local rooms = module:depends("muc");

-- What happened in the rooms, for those who write transcripts. A reader that was away for longer
-- than this many events sees a gap in the numbers.
local kept_events = 10000;
local epoch = string.format("%.6f", now());
local events, first, last = {}, 1, 0;
local waiting = {};

local function events_after(number)
	local list = array();
	for i = math.max(number + 1, first), last do
		list:push(events[i]);
	end
	return { epoch = epoch, last = last, events = list };
end

local function answer_waiting()
	local answered = waiting;
	waiting = {};
	for response, after in pairs(answered) do
		response:send(json.encode(events_after(after)));
	end
end

local function record(kind, room, occupant_jid, account, stanza)
	last = last + 1;
	events[last] = {
		sequence = last, kind = kind, room = room.jid, time = now(), account = account,
		nick = jid.resource(occupant_jid), stanza = stanza and tostring(stanza) or nil,
	};
	if last - first >= kept_events then
		events[first] = nil;
		first = first + 1;
	end
	-- In the next turn of the loop, so that all of one burst travels in one answer.
	module:add_timer(0, answer_waiting);
end

module:hook("muc-broadcast-message", function (event)
	local from = event.stanza.attr.from;
	local occupant = event.room:get_occupant_by_nick(from);
	record("message", event.room, from, occupant and jid.bare(occupant.bare_jid), event.stanza);
end, -100);
module:hook("muc-occupant-joined", function (event)
	record("joined", event.room, event.nick, event.occupant.bare_jid);
end, -100);
module:hook("muc-occupant-left", function (event)
	record("left", event.room, event.nick, event.occupant.bare_jid);
end, -100);

local operations = {};
local answered_later = {};

local function find_room(request)
	return rooms.get_room_from_jid(jid.prep(request.room) or "");
end

function operations.registerAccount(request)
	local user, host = jid.split(jid.prep(request.account));
	if not user or not prosody.hosts[host] then return nil, "no such host"; end
	return usermanager.create_user(user, request.password, host);
end

function operations.createRoom(request)
	local room_jid = jid.prep(request.room);
	if not room_jid then return nil, "not a room address"; end
	local room = rooms.get_room_from_jid(room_jid);
	if not room then
		local err;
		room, err = rooms.create_room(room_jid);
		if not room then return nil, err; end
	end
	-- A room without this would end, with its history, when its last occupant leaves.
	room:set_persistent(true);
	return true;
end

function operations.destroyRoom(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	room:set_persistent(false);
	return room:destroy(nil, request.reason);
end

function operations.say(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	local stanzas = {};
	for i, text in ipairs(request.stanzas) do
		local stanza, err = xml.parse(text);
		if not stanza then return nil, tostring(err); end
		stanza.attr.xmlns = nil; -- the stream's own
		stanza.attr.from = room.jid .. "/" .. request.nick;
		stanza.attr.to = nil;
		if stanza.name == "message" and not stanza.attr.type then stanza.attr.type = "groupchat"; end
		stanzas[i] = stanza;
	end
	for _, stanza in ipairs(stanzas) do
		if stanza.name == "message" then
			room:broadcast_message(stanza);
		else
			room:broadcast(stanza);
		end
	end
	return true;
end

function operations.occupants(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	local list = array();
	for occupant_jid, occupant in room:each_occupant() do
		list:push({ nick = jid.resource(occupant_jid), account = occupant.bare_jid });
	end
	return { occupants = list };
end

function operations.kick(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	return room:set_role(true, room.jid .. "/" .. request.nick, nil, request.reason);
end

-- Occupants with nobody behind them, to take nicknames and to fill rooms. Whoever joins later sees
-- them; to tell those who are there would cost quadratic time in a crowd.
local nobody = "nobody@" .. module.host;

function operations.occupy(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	for _, nick in ipairs(request.nicks) do
		local occupant = room:new_occupant(nobody, room.jid .. "/" .. nick);
		occupant:set_session(nobody .. "/" .. nick, st.presence());
		room:save_occupant(occupant);
	end
	return true;
end

-- What cannot be delivered would be returned, and a room throws out whose stanzas are returned.
local function swallow(event)
	if jid.bare(event.stanza.attr.to) == nobody then return true; end
end
module:hook("message/full", swallow, 10);
module:hook("presence/full", swallow, 10);
module:hook("iq/full", swallow, 10);

-- By room: how many lines the next to join is told for its history, whatever it asks for.
local replays = {};

function operations.replay(request)
	local room = find_room(request);
	if not room then return nil, "no such room"; end
	replays[room.jid] = { count = request.count, from = room.jid .. "/" .. request.nick };
	return true;
end

module:hook("muc-get-history", function (event)
	local room = event.room.jid;
	local replay = replays[room];
	if not replay then return; end
	replays[room] = nil;
	local number, first = 0, math.floor(now()) - replay.count;
	function event.next_stanza()
		if number == replay.count then return nil; end
		number = number + 1;
		return st.message({ type = "groupchat", from = replay.from, to = event.to, id = "replay-" .. number })
			:text_tag("body", "Line " .. number)
			:tag("delay", { xmlns = "urn:xmpp:delay", from = room, stamp = datetime.datetime(first + number) }):up();
	end
	return true;
end, 10);

-- Closes the sockets of an account without a stream's end, as a network that fails.
function operations.cut(request)
	local user = prosody.bare_sessions[jid.bare(jid.prep(request.account) or "")];
	local connections = {};
	for resource, session in pairs(user and user.sessions or {}) do
		if session.conn and (jid.resource(request.account) or resource) == resource then
			connections[#connections + 1] = session.conn;
		end
	end
	for _, connection in ipairs(connections) do
		connection:on("disconnect", "cut");
		connection:destroy();
	end
	return { count = #connections };
end

function operations.events(request, response)
	local after = request.epoch == epoch and request.after or 0;
	if after < last or request.wait <= 0 then return events_after(after); end
	waiting[response] = after;
	function response.on_destroy() waiting[response] = nil; end
	module:add_timer(request.wait, function ()
		if not waiting[response] then return; end
		waiting[response] = nil;
		response:send(json.encode(events_after(after)));
	end);
	return answered_later;
end

local function handle(event)
	local request, response = event.request, event.response;
	if request.headers.authorization ~= "Bearer " .. token then return 401; end
	local body = json.decode(request.body);
	local operation = type(body) == "table" and operations[body.operation];
	if not operation then return 400; end
	response.headers.content_type = "application/json";
	local done, result, err = pcall(operation, body, response);
	if not done then result, err = nil, tostring(result); end
	if result == answered_later then return true; end
	if not result then return json.encode({ error = tostring(err or "refused") }); end
	return json.encode(type(result) == "table" and result or {});
end

module:depends("http");
module:provides("http", {
	name = "support-control";
	default_path = "/support-control";
	route = { ["POST"] = handle };
});

-- The ports were chosen by the system; whoever started us waits at the other end of a FIFO.
local function port_of(service)
	for _, _, _, _, active in portmanager.get_active_services():iter(service, nil, nil, nil) do
		local _, port = active.server.conn:getsockname();
		return tonumber(port);
	end
end

local function announce()
	local file = io.open(ready_file, "w");
	if not file then return; end
	file:write(json.encode({ c2s = port_of("c2s") or 0, http = port_of("http") or 0 }), "\n");
	file:close();
end

module:hook_global("server-started", announce);
